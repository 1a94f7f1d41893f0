// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/pasteboard.h"

class QClipboard;

namespace ledgewise {

// The system clipboard through QClipboard. Every change Qt reports, ours or another
// application's, moves the counter; on X11 that report comes from the server (XFixes),
// so nobody has to poll.
class QtPasteboard final : public Pasteboard
{
    Q_OBJECT

public:
    explicit QtPasteboard(QObject *parent = nullptr);

    qint64 changeCount() const override { return m_changeCount; }
    bool announcesChanges() const override;
    QStringList types() const override;
    QByteArray data(const QString &mimeType) const override;
    void clearContents() override;
    void setContents(QMimeData *contents) override;
    // On X11: an X11SelectionReader on a connection of its own.
    BackgroundReader backgroundReader() const override;

private:
    void clipboardChanged();

    QClipboard *m_clipboard;
    qint64 m_changeCount = 0;
};

} // namespace ledgewise
