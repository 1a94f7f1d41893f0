// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/thumbnail_cache.h"

#include <QBuffer>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>

namespace ledgewise {

namespace {

// Twice the 22-point frame, for screens of two pixels per point; corner radius 4.
constexpr int thumbnailSide = 44;
constexpr qreal thumbnailRadius = 8;

QString dataUrl(const QImage &image)
{
    if (image.isNull())
        return {};
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64());
}

} // namespace

ThumbnailCache::ThumbnailCache(QObject *parent)
    : QObject(parent)
{
    m_thread.setMaxThreadCount(1);
}

ThumbnailCache::~ThumbnailCache()
{
    m_thread.clear();
    m_thread.waitForDone();
}

QString ThumbnailCache::url(const QString &path)
{
    if (const auto found = m_urls.constFind(path); found != m_urls.cend())
        return *found;
    if (!m_making.contains(path)) {
        m_making.insert(path);
        // The task reports back through a queued call on this object, which the
        // destructor outlives by waiting for the task.
        m_thread.start([path, self = this] {
            const QString url = dataUrl(roundedThumbnail(path, thumbnailSide, thumbnailRadius));
            QMetaObject::invokeMethod(
                self, [self, path, url] { self->made(path, url); }, Qt::QueuedConnection);
        });
    }
    return {};
}

void ThumbnailCache::made(const QString &path, const QString &url)
{
    if (!m_making.remove(path))
        return; // forgotten meanwhile: the entry is gone
    m_urls.insert(path, url);
    emit ready();
}

void ThumbnailCache::keepOnly(const QSet<QString> &paths)
{
    m_urls.removeIf([&paths](const auto &entry) { return !paths.contains(entry.key()); });
    m_making.removeIf([&paths](const QString &path) { return !paths.contains(path); });
}

void ThumbnailCache::forget(const QString &path)
{
    m_urls.remove(path);
    m_making.remove(path);
}

QImage ThumbnailCache::roundedThumbnail(const QString &path, int side, qreal radius)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    // Decoded small where the format allows it, whatever the size of the picture.
    if (size.isValid() && size.width() > 0 && size.height() > 0)
        reader.setScaledSize(size.scaled(side, side, Qt::KeepAspectRatioByExpanding));
    QImage picture = reader.read();
    if (picture.isNull())
        return {};
    picture = picture.scaled(side, side, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);

    QImage rounded(side, side, QImage::Format_ARGB32_Premultiplied);
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QPainterPath frame;
    frame.addRoundedRect(QRectF(0, 0, side, side), radius, radius);
    painter.setClipPath(frame);
    painter.drawImage(QPointF((side - picture.width()) / 2.0, (side - picture.height()) / 2.0), picture);
    return rounded;
}

} // namespace ledgewise
