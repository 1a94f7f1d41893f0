// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace ledgewise {

// A bundled SVG symbol drawn straight into the item. The symbols are not Qt Quick
// images: the first image a Qt Quick scene loads from a file makes Qt load every
// image format plugin it has (TIFF, WebP, MNG, JPEG... and their libraries), about
// 2 MB resident for a program that only ever shows these few SVG symbols. Nor is the
// SVG library linked in: its image plugin brings it the first time a symbol is drawn.
class SymbolArt : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT
    // The symbol's name: "timer" draws icons/timer.svg.
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)

public:
    explicit SymbolArt(QQuickItem *parent = nullptr);

    QString name() const { return m_name; }
    void setName(const QString &name);

    void paint(QPainter *painter) override;

    // Where a symbol's drawing is kept among the module's resources.
    static QString resourcePath(const QString &name);

signals:
    void nameChanged();

protected:
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    QString m_name;
};

} // namespace ledgewise
