// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>

namespace ledgewise {

enum class ClipboardKind { text, url, image };

QString rawValue(ClipboardKind kind);
std::optional<ClipboardKind> clipboardKindFromRaw(const QString &raw);

// One captured copy. Exactly one of text, url and imageFileName is set, as the kind says.
struct ClipboardItem {
    QUuid id;
    double createdAt = 0; // seconds since 2001-01-01 00:00:00 UTC
    ClipboardKind kind = ClipboardKind::text;
    std::optional<QString> text;
    std::optional<QString> url;
    std::optional<QString> imageFileName;
    bool isPinned = false;

    friend bool operator==(const ClipboardItem &, const ClipboardItem &) = default;
};

// Seconds since 2001-01-01 00:00:00 UTC, the reference the history file counts from.
double secondsSinceReferenceDate(qint64 msecsSinceEpoch);
double nowSinceReferenceDate();

// The history file: one compact JSON array, newest first; absent fields left out.
QByteArray encodeHistory(const QList<ClipboardItem> &items);
// The same bytes written to `device` entry by entry, so saving a large history never
// holds a second copy of it in memory. False when a write fails.
bool writeHistory(QIODevice &device, const QList<ClipboardItem> &items);
// All or nothing: one entry without "id", "createdAt", "kind" or "isPinned" (or with a
// value of the wrong type) makes the whole file unreadable.
std::optional<QList<ClipboardItem>> decodeHistory(const QByteArray &json);

} // namespace ledgewise
