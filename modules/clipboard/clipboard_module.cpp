#include "modules/clipboard/clipboard_module.h"

#include "modules/clipboard/clipboard_rules.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QSet>

namespace ledgewise {

ClipboardModule::ClipboardModule(ClipboardStore &store, QObject *parent)
    : LedgewiseModule(ModuleID::clipboard, parent)
    , m_store(store)
{
    connect(&m_store, &ClipboardStore::itemsChanged, this, &ClipboardModule::rowsChanged);
}

QImage ClipboardModule::roundedThumbnail(const QString &path, int side, qreal radius)
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

QString ClipboardModule::thumbnail(const ClipboardItem &item) const
{
    if (item.kind != ClipboardKind::image || !item.imageFileName || !ClipboardRules::isPlainFileName(*item.imageFileName))
        return {};
    const QString path = QDir(m_store.imagesDirectory()).filePath(*item.imageFileName);
    // A picture deleted behind the store's back shows the clipboard symbol.
    if (!QFileInfo::exists(path)) {
        m_thumbnails.remove(*item.imageFileName);
        return {};
    }
    if (const auto cached = m_thumbnails.constFind(*item.imageFileName); cached != m_thumbnails.cend())
        return *cached;
    // Twice the 22-point frame, for screens of two pixels per point; corner radius 4.
    const QImage rounded = roundedThumbnail(path, 44, 8);
    QString url;
    if (!rounded.isNull()) {
        QByteArray png;
        QBuffer buffer(&png);
        buffer.open(QIODevice::WriteOnly);
        rounded.save(&buffer, "PNG");
        url = QStringLiteral("data:image/png;base64,") + QString::fromLatin1(png.toBase64());
    }
    m_thumbnails.insert(*item.imageFileName, url);
    return url;
}

QVariantList ClipboardModule::rows() const
{
    QVariantList rows;
    QSet<QString> shown;
    for (const ClipboardItem &item : m_store.items()) {
        if (item.imageFileName)
            shown.insert(*item.imageFileName);
        rows.append(QVariantMap{
            {QStringLiteral("id"), item.id.toString(QUuid::WithoutBraces)},
            {QStringLiteral("title"), ClipboardRules::title(item)},
            {QStringLiteral("kindLabel"), ClipboardRules::kindLabel(item.kind)},
            {QStringLiteral("symbol"), item.kind == ClipboardKind::url ? QStringLiteral("link") : QStringLiteral("doc.on.clipboard")},
            {QStringLiteral("thumbnail"), thumbnail(item)},
            {QStringLiteral("isPinned"), item.isPinned},
        });
    }
    m_thumbnails.removeIf([&shown](const auto &entry) { return !shown.contains(entry.key()); });
    return rows;
}

const ClipboardItem *ClipboardModule::find(const QString &id) const
{
    const QUuid uuid = QUuid::fromString(id);
    for (const ClipboardItem &item : m_store.items()) {
        if (item.id == uuid)
            return &item;
    }
    return nullptr;
}

void ClipboardModule::copyBack(const QString &id)
{
    if (const ClipboardItem *item = find(id))
        m_store.copyBack(*item);
}

void ClipboardModule::togglePin(const QString &id)
{
    m_store.pin(QUuid::fromString(id));
}

void ClipboardModule::remove(const QString &id)
{
    m_store.remove(QUuid::fromString(id));
}

QUrl ClipboardModule::expandedView() const
{
    return qmlComponent(QStringLiteral("Ledgewise/Modules"), QStringLiteral("ClipboardExpandedView.qml"));
}

QVariantMap ClipboardModule::expandedViewProperties() const
{
    return {{QStringLiteral("module"), QVariant::fromValue(const_cast<ClipboardModule *>(this))}};
}

} // namespace ledgewise
