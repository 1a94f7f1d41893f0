// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QUuid>

#include <memory>

namespace ledgewise {

// Turns copied pictures into PNG files in the images folder on a thread of its own:
// decoding, scaling and encoding a big picture takes seconds and hundreds of
// megabytes, which must not hold up the surfaces. Pictures are done one at a time, in
// the order they came; each finished file is handed back in that order.
class ImageEncoder final : public QObject
{
    Q_OBJECT

public:
    struct Finished {
        QString fileName; // inside the folder
        double capturedAt; // when the picture was copied
        QUuid newestThen; // the newest entry when it was copied (null: none)
    };

    explicit ImageEncoder(QString folder, QObject *parent = nullptr);
    // Waits for the picture in hand; pictures not started are dropped.
    ~ImageEncoder() override;

    // Starts on `bytes` (as offered: PNG, TIFF...) copied at `capturedAt`, when
    // `newestThen` was the newest entry.
    void encode(QByteArray bytes, double capturedAt, QUuid newestThen);
    // The files finished since the last call, oldest first (main thread).
    QList<Finished> takeFinished();
    // Drops the pictures not started and waits for the one in hand.
    void stop();

signals:
    // takeFinished() has something (emitted on the thread that made the encoder).
    void finished();

private:
    struct Results;

    QString m_folder;
    std::shared_ptr<Results> m_results;
    QThreadPool m_thread;
};

} // namespace ledgewise
