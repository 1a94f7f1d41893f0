// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/downloads/downloads_module.h"

#include "platform/filesystem/folder_entries.h"
#include "platform/xdg/url_opener.h"

namespace ledgewise {

DownloadsModule::DownloadsModule(DownloadsStore &store, UrlOpener &opener, QObject *parent)
    : LedgewiseModule(ModuleID::downloads, parent)
    , m_store(store)
    , m_opener(opener)
{
    m_rows = rowsOf(m_store.items());
    glanceAtNewest();
    connect(&m_store, &DownloadsStore::itemsChanged, this, &DownloadsModule::glanceAtNewest);
    connect(&m_store, &DownloadsStore::itemsChanged, this, [this] {
        // A growing download changes its item many times a second, mostly its time,
        // which no row shows: the panel is rebuilt only when a row would change.
        QVariantList rows = rowsOf(m_store.items());
        if (rows == m_rows)
            return;
        m_rows = std::move(rows);
        emit rowsChanged();
    });
}

void DownloadsModule::glanceAtNewest()
{
    // The newest file's name; the module's own name while the folder is empty.
    const QList<DownloadItem> &items = m_store.items();
    setGlance(systemImage(), items.isEmpty() ? QStringLiteral("Downloads") : items.constFirst().name);
}

QString DownloadsModule::stateLabel(DownloadItem::Status status)
{
    return status == DownloadItem::Status::downloading ? QStringLiteral("Downloading…") : QStringLiteral("Ready");
}

QVariantList DownloadsModule::rowsOf(const QList<DownloadItem> &items)
{
    QVariantList rows;
    for (const DownloadItem &item : items) {
        rows.append(QVariantMap { { QStringLiteral("name"), item.name },
            { QStringLiteral("state"), stateLabel(item.status) }, { QStringLiteral("url"), item.url.toString() } });
    }
    return rows;
}

void DownloadsModule::open(const QString &url)
{
    // A file deleted since the list was drawn opens nothing: handed over, the desktop's
    // opener would show an error of its own.
    // The path is taken from the URL's bytes: a name that is not UTF-8 keeps them there.
    const QUrl file(url);
    const QByteArray path = FolderEntries::pathOfUrl(file);
    if (path.isEmpty() || !FolderEntries::exists(path))
        return;
    m_opener.open(file);
}

QUrl DownloadsModule::expandedView() const
{
    return qmlComponent(QStringLiteral("Ledgewise/Modules"), QStringLiteral("DownloadsExpandedView.qml"));
}

QVariantMap DownloadsModule::expandedViewProperties() const
{
    return { { QStringLiteral("module"), QVariant::fromValue(const_cast<DownloadsModule *>(this)) } };
}

} // namespace ledgewise
