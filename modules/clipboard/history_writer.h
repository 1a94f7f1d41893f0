// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/clipboard/clipboard_item.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>

#include <memory>

namespace ledgewise {

// Writes the clipboard history file on a thread of its own, so a large history never
// holds up the surfaces. One write at a time; while one runs, only the newest history
// handed over waits (older ones are already out of date). Each write replaces the file
// atomically (QSaveFile) and leaves it readable by its owner only.
class HistoryWriter final : public QObject
{
    Q_OBJECT

public:
    explicit HistoryWriter(QString path, QObject *parent = nullptr);
    // Everything handed over is written first: nothing the user saw is lost on quit.
    ~HistoryWriter() override;

    // Hands over the history to write; returns at once. The list is implicitly shared,
    // so this copies no text.
    void save(const QList<ClipboardItem> &items);
    // Returns once everything handed over so far is on disk (or its write failed).
    void flush();

signals:
    // A write reached the disk (emitted on the writer's own thread of creation).
    void saved();

private:
    struct Pending;

    QString m_path;
    std::shared_ptr<Pending> m_pending;
    QThreadPool m_thread;
};

} // namespace ledgewise
