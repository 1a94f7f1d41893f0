// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/clipboard/x11_selection_reader.h"

#include "platform/x11/xcb_reply.h"

#include <QDeadlineTimer>
#include <QMimeData>

#include <xcb/xcb.h>

#include <poll.h>

namespace ledgewise {

namespace {

constexpr int ownerSilenceMs = 5000;
constexpr int cancelCheckMs = 50;

template <typename Reply> XcbReply<Reply> own(Reply *reply)
{
    return XcbReply<Reply>(reply);
}

bool isTextTarget(const QByteArray &name)
{
    return name == "UTF8_STRING" || name == "STRING" || name == "TEXT" || name == "COMPOUND_TEXT";
}

} // namespace

X11SelectionReader::X11SelectionReader(const std::atomic_bool &cancelled)
    : m_cancelled(cancelled)
{
    m_connection = xcb_connect(nullptr, nullptr);
    if (!m_connection || xcb_connection_has_error(m_connection))
        return;
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    if (!screen)
        return;
    // An unmapped input-only window: the owner writes the data into its properties.
    const quint32 window = xcb_generate_id(m_connection);
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
        XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_flush(m_connection);
    m_window = window;
}

X11SelectionReader::~X11SelectionReader()
{
    if (m_connection) {
        if (m_window)
            xcb_destroy_window(m_connection, m_window);
        xcb_disconnect(m_connection);
    }
}

quint32 X11SelectionReader::atom(const QByteArray &name) const
{
    if (const auto found = m_atoms.constFind(name); found != m_atoms.cend())
        return *found;
    auto reply = own(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, false, quint16(name.size()), name.constData()), nullptr));
    const quint32 value = reply ? reply->atom : quint32(XCB_ATOM_NONE);
    m_atoms.insert(name, value);
    return value;
}

QByteArray X11SelectionReader::atomName(quint32 value) const
{
    auto reply = own(xcb_get_atom_name_reply(m_connection, xcb_get_atom_name(m_connection, value), nullptr));
    if (!reply)
        return {};
    return QByteArray(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()));
}

QStringList X11SelectionReader::types() const
{
    if (m_types)
        return *m_types;
    m_types.emplace();
    if (!isOpen())
        return *m_types;
    const auto targets = convert(atom("TARGETS"));
    if (!targets)
        return *m_types;
    const auto *atoms = reinterpret_cast<const quint32 *>(targets->constData());
    for (qsizetype i = 0; i < targets->size() / qsizetype(sizeof(quint32)); ++i) {
        const QByteArray name = atomName(atoms[i]);
        if (name.isEmpty())
            continue;
        m_targetNames.insert(atoms[i], name);
        const QString type = isTextTarget(name) ? QStringLiteral("text/plain") : QString::fromLatin1(name);
        if (!m_types->contains(type))
            m_types->append(type);
    }
    return *m_types;
}

QByteArray X11SelectionReader::data(const QString &mimeType) const
{
    if (!types().contains(mimeType))
        return {};
    if (mimeType != QLatin1String("text/plain"))
        return convert(atom(mimeType.toLatin1())).value_or(QByteArray());
    // The text in UTF-8, from the first text target the owner offers ("text/plain" as
    // a target of its own is taken to be UTF-8, as Qt takes it).
    const auto offered = [this](const QByteArray &name) {
        for (auto it = m_targetNames.cbegin(); it != m_targetNames.cend(); ++it) {
            if (it.value() == name)
                return true;
        }
        return false;
    };
    for (const char *name : { "UTF8_STRING", "text/plain", "STRING", "TEXT" }) {
        if (!offered(name))
            continue;
        const auto bytes = convert(atom(name));
        if (!bytes)
            continue;
        // STRING is Latin-1 by definition.
        return qstrcmp(name, "STRING") == 0 ? QString::fromLatin1(*bytes).toUtf8() : *bytes;
    }
    return {};
}

void X11SelectionReader::setContents(QMimeData *contents)
{
    delete contents;
}

std::optional<QByteArray> X11SelectionReader::convert(quint32 target) const
{
    if (!isOpen() || target == XCB_ATOM_NONE)
        return std::nullopt;
    const quint32 property = atom("LEDGEWISE_SELECTION");
    const quint32 clipboard = atom("CLIPBOARD");
    xcb_delete_property(m_connection, m_window, property);
    xcb_convert_selection(m_connection, m_window, clipboard, target, property, XCB_CURRENT_TIME);
    xcb_flush(m_connection);
    quint32 reported = XCB_ATOM_NONE;
    if (!waitForEvent(XCB_SELECTION_NOTIFY, property, &reported) || reported == XCB_ATOM_NONE)
        return std::nullopt;

    // First only the type and size, to tell an incremental transfer from a whole one.
    auto head = own(xcb_get_property_reply(m_connection,
        xcb_get_property(m_connection, false, m_window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 0), nullptr));
    if (!head)
        return std::nullopt;
    if (head->type == atom("INCR"))
        return readIncrementally(property);
    if (qsizetype(head->bytes_after) > maximumTransferBytes)
        return std::nullopt;
    auto whole = own(xcb_get_property_reply(m_connection,
        xcb_get_property(
            m_connection, true, m_window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, (head->bytes_after + 3) / 4),
        nullptr));
    if (!whole)
        return std::nullopt;
    return QByteArray(
        static_cast<const char *>(xcb_get_property_value(whole.get())), xcb_get_property_value_length(whole.get()));
}

std::optional<QByteArray> X11SelectionReader::readIncrementally(quint32 property) const
{
    // Deleting the property tells the owner to send the first piece; each piece is
    // read and deleted in turn; an empty piece ends the transfer.
    xcb_delete_property(m_connection, m_window, property);
    xcb_flush(m_connection);
    QByteArray bytes;
    for (;;) {
        if (!waitForEvent(XCB_PROPERTY_NOTIFY, property))
            return std::nullopt;
        auto piece = own(xcb_get_property_reply(m_connection,
            xcb_get_property(m_connection, true, m_window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, UINT32_MAX / 4),
            nullptr));
        xcb_flush(m_connection);
        if (!piece)
            return std::nullopt;
        const int length = xcb_get_property_value_length(piece.get());
        if (length == 0)
            return bytes;
        if (bytes.size() + length > maximumTransferBytes)
            return std::nullopt; // the owner is left to time out on its own
        bytes.append(static_cast<const char *>(xcb_get_property_value(piece.get())), length);
    }
}

bool X11SelectionReader::waitForEvent(int responseType, quint32 property, quint32 *reportedProperty) const
{
    QDeadlineTimer silence(ownerSilenceMs);
    for (;;) {
        while (const XcbReply<xcb_generic_event_t> event { xcb_poll_for_event(m_connection) }) {
            const int type = event->response_type & ~0x80;
            if (type != responseType)
                continue;
            if (type == XCB_SELECTION_NOTIFY) {
                const auto *notify = reinterpret_cast<const xcb_selection_notify_event_t *>(event.get());
                if (notify->requestor != m_window)
                    continue;
                if (reportedProperty)
                    *reportedProperty = notify->property;
                return true;
            }
            if (type == XCB_PROPERTY_NOTIFY) {
                const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
                if (change->window == m_window && change->atom == property && change->state == XCB_PROPERTY_NEW_VALUE)
                    return true;
            }
        }
        if (xcb_connection_has_error(m_connection) || m_cancelled.load() || silence.hasExpired())
            return false;
        pollfd descriptor { xcb_get_file_descriptor(m_connection), POLLIN, 0 };
        ::poll(&descriptor, 1, cancelCheckMs);
    }
}

} // namespace ledgewise
