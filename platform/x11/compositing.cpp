// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/compositing.h"

#include "platform/x11/xcb_reply.h"

#include <QByteArray>
#include <QGuiApplication>

#include <xcb/xcb.h>

#include <cstdlib>

namespace ledgewise {

bool compositingManagerRunning()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return false;
    // The selection is per screen of the display, the one named in DISPLAY.
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen))
        std::free(host);
    const QByteArray name = "_NET_WM_CM_S" + QByteArray::number(screen);
    XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, true, uint16_t(name.size()), name.constData()), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    return owner && owner->owner != XCB_NONE;
}

} // namespace ledgewise
