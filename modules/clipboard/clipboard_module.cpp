#include "modules/clipboard/clipboard_module.h"

#include "modules/clipboard/clipboard_rules.h"

#include <QDir>
#include <QFileInfo>

namespace ledgewise {

ClipboardModule::ClipboardModule(ClipboardStore &store, QObject *parent)
    : LedgewiseModule(ModuleID::clipboard, parent)
    , m_store(store)
{
    connect(&m_store, &ClipboardStore::itemsChanged, this, &ClipboardModule::rowsChanged);
}

QVariantList ClipboardModule::rows() const
{
    QVariantList rows;
    for (const ClipboardItem &item : m_store.items()) {
        QString thumbnail;
        if (item.kind == ClipboardKind::image && item.imageFileName && ClipboardRules::isPlainFileName(*item.imageFileName)) {
            const QString path = QDir(m_store.imagesDirectory()).filePath(*item.imageFileName);
            if (QFileInfo::exists(path))
                thumbnail = QUrl::fromLocalFile(path).toString();
        }
        rows.append(QVariantMap{
            {QStringLiteral("id"), item.id.toString(QUuid::WithoutBraces)},
            {QStringLiteral("title"), ClipboardRules::title(item)},
            {QStringLiteral("kindLabel"), ClipboardRules::kindLabel(item.kind)},
            {QStringLiteral("symbol"), item.kind == ClipboardKind::url ? QStringLiteral("link") : QStringLiteral("doc.on.clipboard")},
            {QStringLiteral("thumbnail"), thumbnail},
            {QStringLiteral("isPinned"), item.isPinned},
        });
    }
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
