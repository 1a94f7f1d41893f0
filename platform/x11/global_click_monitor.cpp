// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/x11/global_click_monitor.h"

#include "platform/x11/xcb_reply.h"

#include <QSocketNotifier>

#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace ledgewise {

GlobalClickMonitor::GlobalClickMonitor(QObject *parent)
    : QObject(parent)
{
    // A connection of our own, so these events never mix with Qt's.
    m_connection = xcb_connect(nullptr, nullptr);
    if (!m_connection || xcb_connection_has_error(m_connection))
        return;
    const xcb_query_extension_reply_t *extension = xcb_get_extension_data(m_connection, &xcb_input_id);
    if (!extension || !extension->present)
        return;
    m_xinputOpcode = extension->major_opcode;
    // The version a client announces decides what it is sent: from 2.1 on, raw events
    // reach the root window even while another client holds a grab (an open menu, a
    // drag), which is exactly when a click elsewhere must still be seen.
    const XcbReply<xcb_input_xi_query_version_reply_t> version(
        xcb_input_xi_query_version_reply(m_connection, xcb_input_xi_query_version(m_connection, 2, 2), nullptr));
    if (!version || version->major_version < 2)
        return;

    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    struct {
        xcb_input_event_mask_t head;
        uint32_t mask;
    } selection = { { XCB_INPUT_DEVICE_ALL_MASTER, 1 }, XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS };
    xcb_input_xi_select_events(m_connection, root, 1, &selection.head);
    xcb_flush(m_connection);

    m_notifier = new QSocketNotifier(xcb_get_file_descriptor(m_connection), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &GlobalClickMonitor::readEvents);
}

GlobalClickMonitor::~GlobalClickMonitor()
{
    delete m_notifier;
    if (m_connection)
        xcb_disconnect(m_connection);
}

void GlobalClickMonitor::readEvents()
{
    while (const XcbReply<xcb_generic_event_t> event { xcb_poll_for_event(m_connection) }) {
        const auto *generic = reinterpret_cast<const xcb_ge_generic_event_t *>(event.get());
        const bool rawPress = (event->response_type & 0x7f) == XCB_GE_GENERIC && generic->extension == m_xinputOpcode
            && generic->event_type == XCB_INPUT_RAW_BUTTON_PRESS;
        const auto *press = reinterpret_cast<const xcb_input_raw_button_press_event_t *>(event.get());
        const int button = rawPress ? int(press->detail) : 0;
        const quint32 time = rawPress ? quint32(press->time) : 0;
        if (rawPress)
            emit buttonPressed(button, time);
    }
}

} // namespace ledgewise
