// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>

#include <atomic>
#include <functional>
#include <memory>

class QMimeData;

namespace ledgewise {

// The system clipboard as the stores see it: typed reads and writes, and a change
// counter that moves on every change, whoever made it. Where the window system
// announces changes, `changed` is emitted right after the counter moves, so a reader
// never has to poll; `announcesChanges()` says whether that is the case here.
class Pasteboard : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~Pasteboard() override = default;

    virtual qint64 changeCount() const = 0;
    virtual bool announcesChanges() const = 0;

    // The MIME types offered now, in the owner's order of preference.
    virtual QStringList types() const = 0;
    // The bytes of one type, empty when it is not offered.
    virtual QByteArray data(const QString &mimeType) const = 0;

    // The plain text offered, decoded; empty when there is none.
    virtual QString text() const;
    // The entries of the offered URI list, in order; broken entries are skipped.
    QList<QUrl> urls() const;

    // Opens a reader of the clipboard for use on one other thread, so large contents are
    // fetched without holding up this one. Empty where the platform has none (then read
    // here); the reader it makes is null when it cannot connect. `cancelled` ends a
    // read in progress early. The function itself may be called from any thread.
    using BackgroundReader = std::function<std::unique_ptr<Pasteboard>(const std::atomic_bool &cancelled)>;
    virtual BackgroundReader backgroundReader() const { return {}; }

    // Empties the clipboard (counts as a change).
    virtual void clearContents() = 0;
    // Replaces the contents with every format of `contents` (counts as a change).
    // Takes ownership.
    virtual void setContents(QMimeData *contents) = 0;

signals:
    void changed();
};

} // namespace ledgewise
