#pragma once

#include "modules/clipboard/clipboard_item.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace ledgewise {

class Pasteboard;

// What one clipboard change is worth keeping as.
struct Capture {
    enum class Kind { nothing, link, text, image };
    Kind kind = Kind::nothing;
    QString value;        // the link, or the untrimmed text
    QByteArray imageData; // encoded image bytes as offered
};

namespace ClipboardRules {

// Text longer than this (in characters) is not kept: a history is for snippets, and
// every capture rewrites the history file.
inline constexpr qsizetype maximumTextLength = 4 * 1024 * 1024;
// Images with more pixels than this are not kept: decoding one takes four bytes a pixel.
inline constexpr qint64 maximumImagePixels = 32'000'000;

// Content a password manager marks as secret is never kept.
bool isSecret(const Pasteboard &pasteboard);

// Links first (only http and https, compared exactly), then text that is not only white
// space, then an image (its TIFF, else its PNG). A link or text equal to the newest entry of its kind is a repeat
// and gives nothing; text is compared untrimmed.
Capture classify(const Pasteboard &pasteboard, const QList<ClipboardItem> &items);

// The text to store for a copied text: trimmed at both ends; empty means nothing.
QString storedText(const QString &copied);

// The image as PNG bytes, or nothing when it does not decode or is too large.
std::optional<QByteArray> pngData(const QByteArray &imageBytes);

// Which entry the capacity rule removes next: the oldest entry that is not pinned,
// while there are more than `capacity`. Nothing when within capacity or all pinned.
std::optional<qsizetype> nextToEvict(const QList<ClipboardItem> &items, int capacity);

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
