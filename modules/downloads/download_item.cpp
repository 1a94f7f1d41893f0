// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/downloads/download_item.h"

#include <algorithm>

namespace ledgewise {

QString rawValue(DownloadItem::Status status)
{
    return status == DownloadItem::Status::downloading ? QStringLiteral("downloading") : QStringLiteral("ready");
}

namespace DownloadRules {

bool isLater(const QDateTime &a, const QDateTime &b)
{
    if (!a.isValid())
        return false;
    if (!b.isValid())
        return true;
    return a > b;
}

QList<DownloadItem> newestFirst(QList<DownloadItem> items)
{
    std::stable_sort(items.begin(), items.end(),
        [](const DownloadItem &a, const DownloadItem &b) { return isLater(a.modified, b.modified); });
    return items;
}

bool isListedName(const QByteArray &name)
{
    return !name.isEmpty() && !name.startsWith('.');
}

DownloadItem::Status statusFor(std::optional<qint64> lastSize, qint64 size)
{
    return lastSize && *lastSize != size ? DownloadItem::Status::downloading : DownloadItem::Status::ready;
}

} // namespace DownloadRules
} // namespace ledgewise
