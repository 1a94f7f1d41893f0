// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/pasteboard.h"

#include <QHash>

#include <atomic>
#include <optional>

struct xcb_connection_t;

namespace ledgewise {

// Reads the X clipboard (the CLIPBOARD selection) over a connection of its own, so it
// can run on any one thread: QClipboard reads on the main thread and holds it for the
// whole transfer, tens of milliseconds for a few megabytes, a third of a second for
// 40 MB. Read-only; made for one look at the clipboard and then thrown away.
class X11SelectionReader final : public Pasteboard
{
    Q_OBJECT

public:
    // A transfer larger than this is abandoned, as if the type were not offered.
    static constexpr qsizetype maximumTransferBytes = 256 * 1024 * 1024;

    // Connects to $DISPLAY; `cancelled` ends any wait early (checked every 50 ms).
    explicit X11SelectionReader(const std::atomic_bool &cancelled);
    ~X11SelectionReader() override;

    bool isOpen() const { return m_window != 0; }

    qint64 changeCount() const override { return 0; }
    bool announcesChanges() const override { return false; }
    // As Qt names them: UTF8_STRING, STRING, TEXT and COMPOUND_TEXT are "text/plain".
    QStringList types() const override;
    // "text/plain" is the UTF-8 text, whichever text type the owner offers.
    QByteArray data(const QString &mimeType) const override;
    void clearContents() override { }
    void setContents(QMimeData *contents) override;

private:
    quint32 atom(const QByteArray &name) const;
    QByteArray atomName(quint32 atom) const;
    // The selection converted to `target`: nothing when it is not offered, the owner
    // does not answer within 5 s, the transfer is too large or the read is cancelled.
    std::optional<QByteArray> convert(quint32 target) const;
    std::optional<QByteArray> readIncrementally(quint32 property) const;
    // True once an event of `responseType` for our window (and `property`, for property
    // changes: a new value) has come; other events are dropped.
    bool waitForEvent(int responseType, quint32 property, quint32 *reportedProperty = nullptr) const;

    const std::atomic_bool &m_cancelled;
    xcb_connection_t *m_connection = nullptr;
    quint32 m_window = 0;
    mutable QHash<QByteArray, quint32> m_atoms;
    mutable std::optional<QStringList> m_types;
    mutable QHash<quint32, QByteArray> m_targetNames;
};

} // namespace ledgewise
