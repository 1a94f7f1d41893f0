// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/symbol_art.h"

#include <QImageReader>
#include <QPainter>
#include <QQuickWindow>
#include <QtMath>

namespace ledgewise {

SymbolArt::SymbolArt(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    setFillColor(Qt::transparent);
}

void SymbolArt::setName(const QString &name)
{
    if (name == m_name)
        return;
    m_name = name;
    update();
    emit nameChanged();
}

void SymbolArt::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry)
{
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    // Drawn again at the new size rather than scaled from the old drawing.
    if (newGeometry.size() != oldGeometry.size())
        update();
}

void SymbolArt::itemChange(ItemChange change, const ItemChangeData &value)
{
    QQuickPaintedItem::itemChange(change, value);
    if (change == ItemVisibleHasChanged && value.boolValue)
        update();
}

QString SymbolArt::resourcePath(const QString &name)
{
    return QStringLiteral(":/qt/qml/Ledgewise/Surfaces/icons/%1.svg").arg(name);
}

void SymbolArt::paint(QPainter *painter)
{
    // Qt Quick paints hidden items too; a hidden symbol is drawn once it is shown.
    if (m_name.isEmpty() || width() <= 0 || height() <= 0 || !isVisible())
        return;
    // Read through the SVG image plugin, named outright so that no other format's
    // plugin is probed, and so that the SVG library is loaded only once a symbol is
    // first shown (a sleeping surface shows none). Parsed at each paint rather than
    // kept: a symbol repaints only when its name or size changes.
    QImageReader reader(resourcePath(m_name), "svg");
    reader.setAutoDetectImageFormat(false);
    const qreal ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    QSize pixels = reader.size().isValid() ? reader.size() : QSize(24, 24);
    pixels.scale(QSize(qCeil(width() * ratio), qCeil(height() * ratio)), Qt::KeepAspectRatio);
    reader.setScaledSize(pixels);
    const QImage image = reader.read();
    if (image.isNull())
        return;
    const QSizeF shown = QSizeF(pixels) / ratio;
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(QRectF(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown), image);
}

} // namespace ledgewise
