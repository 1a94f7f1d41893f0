// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/clipboard/clipboard_store.h"
#include "modules/clipboard/thumbnail_cache.h"
#include "modules/ledgewise_module.h"

#include <QImage>
#include <QVariantList>

namespace ledgewise {

// The clipboard history as a surface module: its panel lists the entries, copies one
// back on a click, and pins or deletes entries.
class ClipboardModule final : public LedgewiseModule
{
    Q_OBJECT
    // One map per entry, newest first: id, title, kindLabel, symbol, thumbnail (the
    // picture as a data URL, cropped and rounded; empty when there is no picture that
    // loads, and while it is being made: the rows change again when it is ready),
    // isPinned.
    Q_PROPERTY(QVariantList rows READ rows NOTIFY rowsChanged)

public:
    explicit ClipboardModule(ClipboardStore &store, QObject *parent = nullptr);

    ClipboardStore &store() const { return m_store; }
    QVariantList rows() const;

    Q_INVOKABLE void copyBack(const QString &id);
    Q_INVOKABLE void togglePin(const QString &id);
    Q_INVOKABLE void remove(const QString &id);

    // A picture as its row shows it (see ThumbnailCache::roundedThumbnail).
    static QImage roundedThumbnail(const QString &path, int side, qreal radius)
    {
        return ThumbnailCache::roundedThumbnail(path, side, radius);
    }

    QUrl expandedView() const override;
    QVariantMap expandedViewProperties() const override;

signals:
    void rowsChanged();

private:
    const ClipboardItem *find(const QString &id) const;
    QString thumbnail(const ClipboardItem &item) const;

    ClipboardStore &m_store;
    // Made once per picture file, off the main thread, not at every redraw of the list.
    mutable ThumbnailCache m_thumbnails;
};

} // namespace ledgewise
