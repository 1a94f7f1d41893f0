// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/clipboard/clipboard_rules.h"

#include "platform/clipboard/pasteboard.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QLocale>
#include <QSet>

#include <algorithm>
#include <cmath>
#include <limits>

#include <utility>

namespace ledgewise::ClipboardRules {

namespace {

QByteArray offeredImage(const Pasteboard &pasteboard)
{
    // TIFF first, then PNG: an application offering both puts its richest picture in
    // the TIFF, and every image is re-encoded as PNG anyway.
    const QStringList offered = pasteboard.types();
    for (const char *type : { "image/tiff", "image/png" }) {
        const QString name = QString::fromLatin1(type);
        if (offered.contains(name)) {
            const QByteArray bytes = pasteboard.data(name);
            if (!bytes.isEmpty())
                return bytes;
        }
    }
    return {};
}

// The first link offered, with its scheme as written: "HTTP://" is not a web link
// here, and QUrl would lower-case it.
std::optional<std::pair<QString, QUrl>> firstLink(const Pasteboard &pasteboard)
{
    const QStringList offered = pasteboard.types();
    QString entry;
    if (offered.contains(QStringLiteral("text/uri-list"))) {
        for (const QByteArray &line : pasteboard.data(QStringLiteral("text/uri-list")).split('\n')) {
            const QByteArray trimmed = line.trimmed();
            if (!trimmed.isEmpty() && !trimmed.startsWith('#')) {
                entry = QString::fromUtf8(trimmed);
                break;
            }
        }
    } else if (offered.contains(QStringLiteral("text/x-moz-url"))) {
        // Browsers' "Copy Link": UTF-16 "url\ntitle".
        const QByteArray bytes = pasteboard.data(QStringLiteral("text/x-moz-url"));
        const QString text
            = QString::fromUtf16(reinterpret_cast<const char16_t *>(bytes.constData()), bytes.size() / 2);
        entry = text.section(QLatin1Char('\n'), 0, 0).trimmed();
    }
    if (entry.isEmpty())
        return std::nullopt;
    const QUrl url(entry, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return std::make_pair(entry.section(QLatin1Char(':'), 0, 0), url);
}

// Bytes in UTF-8 of the character at `at`, and how many UTF-16 units it takes.
std::pair<qsizetype, qsizetype> utf8Width(QStringView text, qsizetype at)
{
    const char16_t unit = text[at].unicode();
    if (unit < 0x80)
        return { 1, 1 };
    if (unit < 0x800)
        return { 2, 1 };
    if (QChar::isHighSurrogate(unit) && at + 1 < text.size() && text[at + 1].isLowSurrogate())
        return { 4, 2 };
    return { 3, 1 }; // a lone surrogate is written as U+FFFD, three bytes too
}

} // namespace

bool isSecret(const Pasteboard &pasteboard)
{
    const QString hint = QStringLiteral("x-kde-passwordManagerHint");
    return pasteboard.types().contains(hint) && pasteboard.data(hint).trimmed() == "secret";
}

Capture classify(const Pasteboard &pasteboard, const QList<ClipboardItem> &items)
{
    const ClipboardItem *newest = items.isEmpty() ? nullptr : &items.constFirst();

    if (const auto link_ = firstLink(pasteboard)) {
        const QString &scheme = link_->first;
        if (scheme == QLatin1String("http") || scheme == QLatin1String("https")) {
            const QString link = QString::fromUtf8(link_->second.toEncoded());
            if (newest && newest->kind == ClipboardKind::url && newest->url == link)
                return {};
            return { Capture::Kind::link, link, {} };
        }
    }

    const QString text = pasteboard.text();
    if (!text.trimmed().isEmpty()) {
        if (newest && newest->kind == ClipboardKind::text) {
            if (newest->text == text)
                return {};
            // A text too long to keep whole repeats the newest entry when what would be
            // kept of it (its first 1 MiB and its size) is that entry.
            if (newest->text && newest->text->endsWith(QLatin1String("bytes copied are kept.]"))
                && utf8Size(text, maximumTextBytes) > maximumTextBytes && newest->text == storedText(text))
                return {};
        }
        return { Capture::Kind::text, text, {} };
    }

    const QByteArray image = offeredImage(pasteboard);
    if (image.isEmpty())
        return {};
    return { Capture::Kind::image, {}, image };
}

QString storedText(const QString &copied)
{
    const QString trimmed = copied.trimmed();
    if (utf8Size(trimmed, maximumTextBytes) <= maximumTextBytes)
        return trimmed;
    // Cut after the last whole character that fits; a surrogate pair is one character.
    qsizetype bytes = 0;
    qsizetype kept = 0;
    while (kept < trimmed.size()) {
        const auto [width, units] = utf8Width(trimmed, kept);
        if (bytes + width > maximumTextBytes)
            break;
        bytes += width;
        kept += units;
    }
    return trimmed.first(kept) + cutNote(utf8Size(trimmed, std::numeric_limits<qsizetype>::max() - 1));
}

QString cutNote(qint64 copiedBytes)
{
    // Exact counts: the note also tells a copied-again text from a different one of the
    // same beginning (see classify()).
    const QLocale english(QLocale::English);
    return QStringLiteral("\u2026\n[Cut: %1 of %2 bytes copied are kept.]")
        .arg(english.toString(qint64(maximumTextBytes)), english.toString(copiedBytes));
}

qsizetype utf8Size(QStringView text, qsizetype limit)
{
    // Every UTF-16 unit is at least one byte: a text longer than the limit is over it.
    if (text.size() > limit)
        return limit + 1;
    // One, two or three bytes a unit; a surrogate pair is four bytes in all, not six.
    // Kept to one plain loop: it runs over megabytes on the main thread.
    const char16_t *units = text.utf16();
    const qsizetype size = text.size();
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < size; ++i) {
        const char16_t unit = units[i];
        bytes += 1 + (unit >= 0x80) + (unit >= 0x800);
        if (QChar::isHighSurrogate(unit) && i + 1 < size && QChar::isLowSurrogate(units[i + 1])) {
            bytes += 1; // with the three counted for this unit, four for the pair
            ++i;
        }
    }
    return std::min(bytes, limit + 1);
}

QSize storedImageSize(QSize size)
{
    const qint64 pixels = qint64(size.width()) * size.height();
    if (size.isEmpty() || pixels <= maximumStoredImagePixels)
        return size;
    const double scale = std::sqrt(double(maximumStoredImagePixels) / double(pixels));
    return QSize(std::max(1, int(size.width() * scale)), std::max(1, int(size.height() * scale)));
}

std::optional<QByteArray> pngData(const QByteArray &imageBytes)
{
    QBuffer source;
    source.setData(imageBytes);
    source.open(QIODevice::ReadOnly);
    QImageReader reader(&source);
    // The header tells the size before anything large is decoded; formats that can
    // decode straight to a smaller size (JPEG) then do.
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > maximumImagePixels)
        return std::nullopt;
    if (size.isValid() && storedImageSize(size) != size)
        reader.setScaledSize(storedImageSize(size));
    QImage image = reader.read();
    if (image.isNull() || qint64(image.width()) * image.height() > maximumImagePixels)
        return std::nullopt;
    if (const QSize stored = storedImageSize(image.size()); stored != image.size())
        image = image.scaled(stored, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QByteArray png;
    QBuffer target(&png);
    target.open(QIODevice::WriteOnly);
    if (!image.save(&target, "PNG"))
        return std::nullopt;
    return png;
}

std::optional<qsizetype> nextToEvict(const QList<ClipboardItem> &items, int capacity, qsizetype justAdded)
{
    if (items.size() <= capacity)
        return std::nullopt;
    // The newest entry, the one just captured, is never the one to go: with every
    // older entry pinned the history simply grows past its capacity.
    for (qsizetype i = items.size() - 1; i >= 1; --i) {
        if (!items[i].isPinned && i != justAdded)
            return i;
    }
    return std::nullopt;
}

qsizetype insertionIndex(const QList<ClipboardItem> &items, const QUuid &newestThen, double capturedAt)
{
    if (newestThen.isNull())
        return items.size();
    for (qsizetype i = 0; i < items.size(); ++i) {
        if (items[i].id == newestThen)
            return i;
    }
    qsizetype index = 0;
    while (index < items.size() && items[index].createdAt > capturedAt)
        ++index;
    return index;
}

bool isLeftoverSaveFile(const QString &name, const QString &savedName)
{
    if (name.size() != savedName.size() + 7 || !name.startsWith(savedName)
        || name[savedName.size()] != QLatin1Char('.'))
        return false;
    for (const QChar c : QStringView(name).sliced(savedName.size() + 1)) {
        if (!(c.isDigit() || (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
                || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))))
            return false;
    }
    return true;
}

QStringList unreferencedImages(const QStringList &files, const QList<ClipboardItem> &items)
{
    QSet<QString> named;
    for (const ClipboardItem &item : items) {
        if (item.imageFileName)
            named.insert(*item.imageFileName);
    }
    QStringList unreferenced;
    for (const QString &file : files) {
        if (!named.contains(file))
            unreferenced.append(file);
    }
    return unreferenced;
}

QString title(const ClipboardItem &item)
{
    switch (item.kind) {
    case ClipboardKind::text:
        if (!item.text)
            return QStringLiteral("Text");
        return item.text->left(maximumTitleLength).replace(QLatin1Char('\n'), QLatin1Char(' ')).trimmed();
    case ClipboardKind::url:
        return item.url.value_or(QStringLiteral("URL"));
    case ClipboardKind::image:
        return QStringLiteral("Image");
    }
    return {};
}

QString kindLabel(ClipboardKind kind)
{
    switch (kind) {
    case ClipboardKind::text:
        return QStringLiteral("Text");
    case ClipboardKind::url:
        return QStringLiteral("Link");
    case ClipboardKind::image:
        return QStringLiteral("Image");
    }
    return {};
}

QString glanceSnippet(const QList<ClipboardItem> &items)
{
    return items.isEmpty() ? QStringLiteral("Clipboard") : title(items.constFirst());
}

bool isPlainFileName(const QString &name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..")
        && !name.contains(QLatin1Char('/')) && !name.contains(QChar(0));
}

} // namespace ledgewise::ClipboardRules
