// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The fuzzers that play another application read their input as what that application
// offers: one or more parts, each a line "=== MIME/TYPE" and the bytes that follow it up
// to the next such line. Bytes before the first marker are offered as text/plain, so any
// input means something and the seed files stay readable.
#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace ledgewise::fuzzing {

using MimeParts = QList<QPair<QString, QByteArray>>;

inline MimeParts mimeParts(const uint8_t *data, size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    // Where the next "=== " that starts a line begins, or -1.
    const auto nextMarker = [&input](qsizetype from) -> qsizetype {
        if (from == 0 && input.startsWith("=== "))
            return 0;
        // From the line break that ended the previous type line, if there was one.
        const qsizetype found = input.indexOf("\n=== ", from > 0 ? from - 1 : 0);
        return found < 0 ? -1 : found + 1;
    };
    MimeParts parts;
    QString type = QStringLiteral("text/plain");
    bool typed = false;
    qsizetype pos = 0;
    while (true) {
        const qsizetype marker = nextMarker(pos);
        const qsizetype bodyEnd = marker < 0 ? input.size() : std::max(pos, marker - 1);
        if (typed || bodyEnd > pos)
            parts.append({ type, input.mid(pos, bodyEnd - pos) });
        if (marker < 0)
            break;
        const qsizetype lineEnd = input.indexOf('\n', marker);
        const qsizetype typeEnd = lineEnd < 0 ? input.size() : lineEnd;
        type = QString::fromUtf8(input.mid(marker + 4, typeEnd - marker - 4)).trimmed();
        typed = true;
        pos = lineEnd < 0 ? input.size() : lineEnd + 1;
    }
    return parts;
}

} // namespace ledgewise::fuzzing
