// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/system_bell.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

namespace ledgewise {

void X11Bell::ring()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection())
        return;
    xcb_bell(x11->connection(), 0);
    xcb_flush(x11->connection());
}

} // namespace ledgewise
