// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/active_window.h"

#include "platform/x11/xcb_reply.h"

#include <QGuiApplication>
#include <QScreen>

#include <xcb/xcb.h>

namespace ledgewise {

std::optional<QPoint> activeWindowCentre()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return std::nullopt;
    const char name[] = "_NET_ACTIVE_WINDOW";
    XcbReply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, true, sizeof name - 1, name), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return std::nullopt;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    XcbReply<xcb_get_property_reply_t> property(xcb_get_property_reply(
        connection, xcb_get_property(connection, false, root, atom->atom, XCB_ATOM_WINDOW, 0, 1), nullptr));
    if (!property || property->format != 32 || xcb_get_property_value_length(property.get()) < 4)
        return std::nullopt;
    const xcb_window_t active = *static_cast<const xcb_window_t *>(xcb_get_property_value(property.get()));
    if (active == XCB_NONE)
        return std::nullopt;
    // A window that went away leaves its id behind: its geometry cannot be read.
    XcbReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, active), nullptr));
    if (!geometry)
        return std::nullopt;
    XcbReply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, active, root, 0, 0), nullptr));
    if (!origin)
        return std::nullopt;
    const QPoint native(origin->dst_x + geometry->width / 2, origin->dst_y + geometry->height / 2);
    // Qt's coordinates are the native ones divided by the screen's scale.
    const QScreen *primary = QGuiApplication::primaryScreen();
    const double ratio = primary && primary->devicePixelRatio() > 0 ? primary->devicePixelRatio() : 1.0;
    return QPoint(int(native.x() / ratio), int(native.y() / ratio));
}

} // namespace ledgewise
