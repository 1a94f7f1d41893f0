#include "surfaces/symbol_art.h"

#include <QPainter>
#include <QSvgRenderer>

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

QString SymbolArt::resourcePath(const QString &name)
{
    return QStringLiteral(":/qt/qml/Ledgewise/Surfaces/icons/%1.svg").arg(name);
}

void SymbolArt::paint(QPainter *painter)
{
    if (m_name.isEmpty())
        return;
    // Parsed at each paint rather than kept: a symbol repaints only when its name or
    // size changes, and a parsed drawing held per item would outweigh the parse.
    QSvgRenderer renderer(resourcePath(m_name));
    if (!renderer.isValid())
        return;
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    renderer.render(painter, QRectF(0, 0, width(), height()));
}

} // namespace ledgewise
