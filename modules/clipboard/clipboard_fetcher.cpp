// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_fetcher.h"

#include "modules/clipboard/clipboard_rules.h"

#include <mutex>
#include <utility>

namespace ledgewise {

struct ClipboardFetcher::Shared {
    std::atomic_bool cancelled = false;
    std::mutex mutex;
    QList<Fetched> fetched;
};

ClipboardFetcher::ClipboardFetcher(Pasteboard::BackgroundReader reader, QObject *parent)
    : QObject(parent)
    , m_reader(std::move(reader))
    , m_shared(std::make_shared<Shared>())
{
    // One read at a time, in the order of the changes.
    m_thread.setMaxThreadCount(1);
}

ClipboardFetcher::~ClipboardFetcher()
{
    m_shared->cancelled = true;
    m_thread.clear();
    m_thread.waitForDone();
}

void ClipboardFetcher::fetch(qint64 changeCount)
{
    // The task reports back through a queued call on this object, which the destructor
    // outlives by waiting for the task.
    m_thread.start([shared = m_shared, reader = m_reader, changeCount, self = this] {
        Fetched result { changeCount, std::nullopt, std::nullopt };
        if (const std::unique_ptr<Pasteboard> clipboard = reader(shared->cancelled)) {
            // The rules read what they need; with no history to compare against they
            // read everything any history could need.
            RecordingPasteboard recording(*clipboard);
            if (!ClipboardRules::isSecret(recording)) {
                const Capture capture = ClipboardRules::classify(recording, {});
                if (capture.kind == Capture::Kind::text)
                    result.storedText = ClipboardRules::storedText(capture.value);
            }
            result.contents = recording.contents();
        }
        {
            std::lock_guard lock(shared->mutex);
            shared->fetched.append(std::move(result));
        }
        QMetaObject::invokeMethod(self, &ClipboardFetcher::fetched, Qt::QueuedConnection);
    });
}

QList<ClipboardFetcher::Fetched> ClipboardFetcher::takeFetched()
{
    std::lock_guard lock(m_shared->mutex);
    return std::exchange(m_shared->fetched, {});
}

} // namespace ledgewise
