// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/clipboard/pasteboard.h"
#include "platform/clipboard/pasteboard_snapshot.h"

#include <QList>
#include <QObject>
#include <QThreadPool>

#include <memory>
#include <optional>

namespace ledgewise {

// Reads what the store needs of a new clipboard content on a thread of its own (where
// the platform allows it), so a copy of many megabytes never holds up the surfaces:
// exactly what the capture rules ask for (the types, the secret mark, a link, the text,
// a picture only when there is no text), kept for the store to decide on.
class ClipboardFetcher final : public QObject
{
    Q_OBJECT

public:
    struct Fetched {
        qint64 changeCount; // the change this read was made for
        std::optional<PasteboardContents> contents; // nothing: read it on the main thread
        // When the contents are a text to keep: how it is stored (trimmed, and cut when
        // over 1 MiB), worked out here too.
        std::optional<QString> storedText;
    };

    explicit ClipboardFetcher(Pasteboard::BackgroundReader reader, QObject *parent = nullptr);
    // Cancels the read in hand and waits for it.
    ~ClipboardFetcher() override;

    bool isAvailable() const { return bool(m_reader); }
    // Starts reading the clipboard for the change counted `changeCount`.
    void fetch(qint64 changeCount);
    // The reads finished since the last call, oldest first (main thread).
    QList<Fetched> takeFetched();

signals:
    // takeFetched() has something (emitted on the thread that made the fetcher).
    void fetched();

private:
    struct Shared;

    Pasteboard::BackgroundReader m_reader;
    std::shared_ptr<Shared> m_shared;
    QThreadPool m_thread;
};

} // namespace ledgewise
