// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_preparation.h"

#include "dragdrop/unique_name.h"

#include <QDir>
#include <QSaveFile>
#include <QUrl>

namespace ledgewise::DropPreparation {

namespace {

bool hasLongText(const DropPayload &payload)
{
    return payload.fileURLs.isEmpty() && payload.urls.isEmpty() && !payload.image && payload.text
        && payload.text.utf8Size() > longestMailBody;
}

} // namespace

bool isSlow(DropAction action, const DropPayload &payload)
{
    return (action == DropAction::share || action == DropAction::airDrop) && hasLongText(payload);
}

DropPayload prepare(DropAction action, DropPayload payload, const QString &shareFolder)
{
    if (!isSlow(action, payload))
        return payload;
    if (action == DropAction::airDrop) {
        payload.text.value();
        return payload;
    }
    if (!QDir().mkpath(shareFolder))
        return {};
    QSaveFile file(uniquePath(shareFolder, QStringLiteral("Dropped text.txt")));
    if (!file.open(QIODevice::WriteOnly) || file.write(payload.text.utf8()) < 0 || !file.commit())
        return {};
    DropPayload attached;
    attached.kind = DropPayload::Kind::files;
    attached.fileURLs = { QUrl::fromLocalFile(file.fileName()) };
    return attached;
}

} // namespace ledgewise::DropPreparation
