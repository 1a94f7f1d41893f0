#include "modules/downloads/download_item.h"

#include <algorithm>

namespace ledgewise {

QString rawValue(DownloadItem::Status status)
{
    return status == DownloadItem::Status::downloading ? QStringLiteral("downloading") : QStringLiteral("ready");
}

namespace DownloadRules {

QList<DownloadItem> newestFirst(QList<DownloadItem> items)
{
    // An undated file counts as the distant past.
    const auto isLater = [](const DownloadItem &a, const DownloadItem &b) {
        if (!a.modified.isValid())
            return false;
        if (!b.modified.isValid())
            return true;
        return a.modified > b.modified;
    };
    std::stable_sort(items.begin(), items.end(), isLater);
    return items;
}

DownloadItem::Status statusFor(std::optional<qint64> lastSize, qint64 size)
{
    return lastSize && *lastSize != size ? DownloadItem::Status::downloading : DownloadItem::Status::ready;
}

} // namespace DownloadRules
} // namespace ledgewise
