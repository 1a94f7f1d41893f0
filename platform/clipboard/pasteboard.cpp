// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/clipboard/pasteboard.h"

namespace ledgewise {

QString Pasteboard::text() const
{
    const QStringList offered = types();
    for (const char *type : { "text/plain;charset=utf-8", "text/plain" }) {
        const QString name = QString::fromLatin1(type);
        if (offered.contains(name))
            return QString::fromUtf8(data(name));
    }
    return {};
}

QList<QUrl> Pasteboard::urls() const
{
    const QString uriList = QStringLiteral("text/uri-list");
    if (!types().contains(uriList))
        return {};
    QList<QUrl> result;
    for (const QByteArray &line : data(uriList).split('\n')) {
        const QByteArray entry = line.trimmed();
        if (entry.isEmpty() || entry.startsWith('#'))
            continue;
        const QUrl url = QUrl::fromEncoded(entry, QUrl::StrictMode);
        if (url.isValid())
            result.append(url);
    }
    return result;
}

} // namespace ledgewise
