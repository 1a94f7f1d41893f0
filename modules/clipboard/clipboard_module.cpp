// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_module.h"

#include "modules/clipboard/clipboard_rules.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace ledgewise {

ClipboardModule::ClipboardModule(ClipboardStore &store, QObject *parent)
    : LedgewiseModule(ModuleID::clipboard, parent)
    , m_store(store)
{
    connect(&m_store, &ClipboardStore::itemsChanged, this, &ClipboardModule::rowsChanged);
    connect(&m_thumbnails, &ThumbnailCache::ready, this, &ClipboardModule::rowsChanged);
    // The glance shows the newest entry as soon as it is captured.
    const auto glanceAtNewest = [this] { setGlance(systemImage(), m_store.glanceSnippet()); };
    connect(&m_store, &ClipboardStore::itemsChanged, this, glanceAtNewest);
    glanceAtNewest();
}

QString ClipboardModule::thumbnail(const ClipboardItem &item) const
{
    if (item.kind != ClipboardKind::image || !item.imageFileName
        || !ClipboardRules::isPlainFileName(*item.imageFileName))
        return {};
    const QString path = QDir(m_store.imagesDirectory()).filePath(*item.imageFileName);
    // A picture deleted behind the store's back shows the clipboard symbol.
    if (!QFileInfo::exists(path)) {
        m_thumbnails.forget(path);
        return {};
    }
    return m_thumbnails.url(path);
}

QVariantList ClipboardModule::rows() const
{
    QVariantList rows;
    QSet<QString> shown;
    for (const ClipboardItem &item : m_store.items()) {
        if (item.imageFileName)
            shown.insert(QDir(m_store.imagesDirectory()).filePath(*item.imageFileName));
        rows.append(QVariantMap {
            { QStringLiteral("id"), item.id.toString(QUuid::WithoutBraces) },
            { QStringLiteral("title"), ClipboardRules::title(item) },
            { QStringLiteral("kindLabel"), ClipboardRules::kindLabel(item.kind) },
            { QStringLiteral("symbol"),
                item.kind == ClipboardKind::url ? QStringLiteral("link") : QStringLiteral("doc.on.clipboard") },
            { QStringLiteral("thumbnail"), thumbnail(item) },
            { QStringLiteral("isPinned"), item.isPinned },
        });
    }
    m_thumbnails.keepOnly(shown);
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
    m_store.togglePin(QUuid::fromString(id));
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
    return { { QStringLiteral("module"), QVariant::fromValue(const_cast<ClipboardModule *>(this)) } };
}

} // namespace ledgewise
