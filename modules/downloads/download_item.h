// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace ledgewise {

struct DownloadItem {
    enum class Status { downloading, ready };

    QUrl url;
    QString name;
    QDateTime modified; // invalid when the system gives none: sorts last
    Status status = Status::ready;

    QString id() const { return url.path(); }
    friend bool operator==(const DownloadItem &, const DownloadItem &) = default;
};

QString rawValue(DownloadItem::Status status);

namespace DownloadRules {

// The panel shows no more than this many files; the others are still followed.
inline constexpr qsizetype maximumItems = 12;

// Whether a file modified at `a` sorts before one modified at `b`: strictly later
// first; a missing (invalid) date counts as the distant past.
bool isLater(const QDateTime &a, const QDateTime &b);

// Newest first; equal dates keep their order; files without a date go last.
QList<DownloadItem> newestFirst(QList<DownloadItem> items);

// Whether a file of this name is listed at all: no hidden (dot) names.
bool isListedName(const QByteArray &name);

// A file is downloading when its size differs from the size last measured; a file
// seen for the first time is ready.
DownloadItem::Status statusFor(std::optional<qint64> lastSize, qint64 size);

} // namespace DownloadRules
} // namespace ledgewise
