// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "modules/clipboard/clipboard_item.h"

#include <QByteArray>
#include <QList>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace ledgewise {

class Pasteboard;

// What one clipboard change is worth keeping as.
struct Capture {
    enum class Kind { nothing, link, text, image };
    Kind kind = Kind::nothing;
    QString value; // the link, or the untrimmed text
    QByteArray imageData; // encoded image bytes as offered
};

namespace ClipboardRules {

// A text is kept whole up to this many bytes of UTF-8 (1 MiB). A longer one keeps its
// first 1 MiB followed by a note saying it was cut, so neither the history nor a copy
// back ever passes a part off as the whole.
inline constexpr qsizetype maximumTextBytes = 1024 * 1024;
// Pictures up to this many pixels (2^23: a 3840 x 2160 screen fits) are kept as they
// are; larger ones are scaled down to it, keeping their proportions.
inline constexpr qint64 maximumStoredImagePixels = 8'388'608;
// Pictures with more pixels than this are never decoded, judged from the header:
// decoding one takes four bytes a pixel.
inline constexpr qint64 maximumImagePixels = 32'000'000;
// A row's title or the glance never shows more than a line: longer texts are cut to
// this many characters before line breaks are replaced, so a 1 MiB entry costs no more
// to show than a short one.
inline constexpr qsizetype maximumTitleLength = 1024;

// Content a password manager marks as secret is never kept.
bool isSecret(const Pasteboard &pasteboard);

// Links first (only http and https, compared exactly), then text that is not only white
// space, then an image (its TIFF, else its PNG). A link or text equal to the newest entry of its kind is a repeat
// and gives nothing; text is compared untrimmed.
Capture classify(const Pasteboard &pasteboard, const QList<ClipboardItem> &items);

// The text to store for a copied text: trimmed at both ends, and over
// `maximumTextBytes` cut there (never inside a character) and followed by cutNote();
// empty means nothing.
QString storedText(const QString &copied);

// What ends a cut text: "…" and a line saying how many bytes of how many were kept.
QString cutNote(qint64 copiedBytes);

// Bytes of `text` in UTF-8, counted up to `limit` + 1 at most (enough to tell "over").
qsizetype utf8Size(QStringView text, qsizetype limit);

// The size a picture is stored at: as it is up to `maximumStoredImagePixels`, else
// scaled down to fit it with the same proportions.
QSize storedImageSize(QSize size);

// The image as PNG bytes at storedImageSize(), or nothing when it does not decode or
// has more than `maximumImagePixels`. Safe on any thread; it is slow for big pictures.
std::optional<QByteArray> pngData(const QByteArray &imageBytes);

// Which entry the capacity rule removes next: the oldest entry that is not pinned,
// while there are more than `capacity`. Nothing when within capacity or all pinned.
// The newest entry and `justAdded` (an entry placed below newer ones) never go.
std::optional<qsizetype> nextToEvict(const QList<ClipboardItem> &items, int capacity, qsizetype justAdded = 0);

// Where an entry goes that is ready only after later copies were added (a picture
// being converted): right below everything copied after it, that is just above the
// entry that was the newest when it was copied (`newestThen`, null for an empty
// history). When that entry is gone, below every entry made after `capturedAt`.
qsizetype insertionIndex(const QList<ClipboardItem> &items, const QUuid &newestThen, double capturedAt);

// A temporary file an interrupted atomic save of `savedName` left behind: the name, a
// dot and six letters or digits ("clipboard.json.a1B2c3").
bool isLeftoverSaveFile(const QString &name, const QString &savedName);

// The files of the images folder that no entry names (pictures of a history that was
// set aside, of a save that never finished, or leftovers of an interrupted write).
QStringList unreferencedImages(const QStringList &files, const QList<ClipboardItem> &items);

// How an entry reads in one line: its text with line breaks as spaces, its link, or
// "Image"; the surface's glance shows the newest entry this way.
QString title(const ClipboardItem &item);

// The word under an entry's title: "Text", "Link" or "Image".
QString kindLabel(ClipboardKind kind);

// The surface's glance text for the history: the newest entry's title, or "Clipboard".
QString glanceSnippet(const QList<ClipboardItem> &items);

// An image file name is kept only if it is a plain name inside the images folder.
bool isPlainFileName(const QString &name);

} // namespace ClipboardRules
} // namespace ledgewise
