// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "shortcuts/application_shortcuts.h"

namespace ledgewise::ApplicationShortcuts {

using namespace GlobalShortcuts;

Name toggleLeft()
{
    return { QStringLiteral("toggleLeft"), Shortcut(Key::space, optionFlag) };
}

Name toggleRight()
{
    return { QStringLiteral("toggleRight"), Shortcut(Key::space, shiftFlag | optionFlag) };
}

void declareAll(Store &store)
{
    store.declare(toggleLeft());
    store.declare(toggleRight());
}

} // namespace ledgewise::ApplicationShortcuts
