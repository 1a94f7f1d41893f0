#include "modules/downloads/downloads_module.h"

#include "platform/xdg/url_opener.h"

#include <QFileInfo>

namespace ledgewise {

DownloadsModule::DownloadsModule(DownloadsStore &store, UrlOpener &opener, QObject *parent)
    : LedgewiseModule(ModuleID::downloads, parent)
    , m_store(store)
    , m_opener(opener)
{
    connect(&m_store, &DownloadsStore::itemsChanged, this, &DownloadsModule::rowsChanged);
}

QString DownloadsModule::stateLabel(DownloadItem::Status status)
{
    return status == DownloadItem::Status::downloading ? QStringLiteral("Downloading…") : QStringLiteral("Ready");
}

QVariantList DownloadsModule::rows() const
{
    QVariantList rows;
    for (const DownloadItem &item : m_store.items()) {
        rows.append(QVariantMap{{QStringLiteral("name"), item.name},
                                {QStringLiteral("state"), stateLabel(item.status)},
                                {QStringLiteral("url"), item.url.toString()}});
    }
    return rows;
}

void DownloadsModule::open(const QString &url)
{
    // A file deleted since the list was drawn opens nothing: handed over, the desktop's
    // opener would show an error of its own.
    const QUrl file(url);
    if (!file.isLocalFile() || !QFileInfo::exists(file.toLocalFile()))
        return;
    m_opener.open(file);
}

QUrl DownloadsModule::expandedView() const
{
    return qmlComponent(QStringLiteral("Ledgewise/Modules"), QStringLiteral("DownloadsExpandedView.qml"));
}

QVariantMap DownloadsModule::expandedViewProperties() const
{
    return {{QStringLiteral("module"), QVariant::fromValue(const_cast<DownloadsModule *>(this))}};
}

} // namespace ledgewise
