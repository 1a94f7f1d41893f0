// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/reopen_rule.h"

#include <QWindow>

#include <algorithm>

namespace ledgewise {

bool anyOwnWindowShowing(const QWindowList &windows)
{
    return std::any_of(windows.cbegin(), windows.cend(), [](const QWindow *window) {
        const Qt::WindowType type = window->type();
        return window->isVisible() && (type == Qt::Window || type == Qt::Dialog);
    });
}

} // namespace ledgewise
