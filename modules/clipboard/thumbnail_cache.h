// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <QSet>
#include <QString>
#include <QThreadPool>

namespace ledgewise {

// The clipboard rows' pictures, made on a thread of their own (decoding a picture
// file takes far longer than a frame) and once per picture file; kept in memory as
// small PNG data URLs, a few kilobytes each.
class ThumbnailCache final : public QObject
{
    Q_OBJECT

public:
    explicit ThumbnailCache(QObject *parent = nullptr);
    // Waits for the thumbnail in hand; the others are dropped.
    ~ThumbnailCache() override;

    // The thumbnail of the picture at `path` as a data URL. Empty while it is being made
    // (`ready` follows) and when the picture does not load.
    QString url(const QString &path);
    // Forgets every thumbnail but those of `paths`.
    void keepOnly(const QSet<QString> &paths);
    void forget(const QString &path);

    // A picture as its row shows it: scaled to fill `side` x `side` pixels keeping its
    // aspect ratio, cropped to the middle, with the corners outside a rounded rectangle
    // of radius `radius` transparent. Null when the file does not load. Any thread.
    static QImage roundedThumbnail(const QString &path, int side, qreal radius);

signals:
    // A thumbnail asked for earlier is ready.
    void ready();

private:
    void made(const QString &path, const QString &url);

    QHash<QString, QString> m_urls;
    QSet<QString> m_making;
    QThreadPool m_thread;
};

} // namespace ledgewise
