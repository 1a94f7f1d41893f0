// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/placeholder_modules.h"

namespace ledgewise {

QUrl PlaceholderModule::expandedView() const
{
    return qmlComponent(QStringLiteral("Ledgewise/Modules"), QStringLiteral("ComingSoonView.qml"));
}

QVariantMap PlaceholderModule::expandedViewProperties() const
{
    return { { QStringLiteral("title"), title() } };
}

} // namespace ledgewise
