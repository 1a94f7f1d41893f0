#include "modules/clipboard/clipboard_rules.h"

#include "platform/clipboard/pasteboard.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

#include <utility>

namespace ledgewise::ClipboardRules {

namespace {

QByteArray offeredImage(const Pasteboard &pasteboard)
{
    // TIFF first, then PNG: an application offering both puts its richest picture in
    // the TIFF, and every image is re-encoded as PNG anyway.
    const QStringList offered = pasteboard.types();
    for (const char *type : {"image/tiff", "image/png"}) {
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
        const QString text = QString::fromUtf16(reinterpret_cast<const char16_t *>(bytes.constData()), bytes.size() / 2);
        entry = text.section(QLatin1Char('\n'), 0, 0).trimmed();
    }
    if (entry.isEmpty())
        return std::nullopt;
    const QUrl url(entry, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    return std::make_pair(entry.section(QLatin1Char(':'), 0, 0), url);
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
            return {Capture::Kind::link, link, {}};
        }
    }

    const QString text = pasteboard.text();
    if (!text.trimmed().isEmpty()) {
        if (newest && newest->kind == ClipboardKind::text && newest->text == text)
            return {};
        if (text.size() > maximumTextLength)
            return {};
        return {Capture::Kind::text, text, {}};
    }

    const QByteArray image = offeredImage(pasteboard);
    if (image.isEmpty())
        return {};
    return {Capture::Kind::image, {}, image};
}

QString storedText(const QString &copied)
{
    return copied.trimmed();
}

std::optional<QByteArray> pngData(const QByteArray &imageBytes)
{
    QBuffer source;
    source.setData(imageBytes);
    source.open(QIODevice::ReadOnly);
    QImageReader reader(&source);
    // The header tells the size before anything large is decoded.
    const QSize size = reader.size();
    if (size.isValid() && qint64(size.width()) * size.height() > maximumImagePixels)
        return std::nullopt;
    const QImage image = reader.read();
    if (image.isNull() || qint64(image.width()) * image.height() > maximumImagePixels)
        return std::nullopt;
    QByteArray png;
    QBuffer target(&png);
    target.open(QIODevice::WriteOnly);
    if (!image.save(&target, "PNG"))
        return std::nullopt;
    return png;
}

std::optional<qsizetype> nextToEvict(const QList<ClipboardItem> &items, int capacity)
{
    if (items.size() <= capacity)
        return std::nullopt;
    // The newest entry, the one just captured, is never the one to go: with every
    // older entry pinned the history simply grows past its capacity.
    for (qsizetype i = items.size() - 1; i >= 1; --i) {
        if (!items[i].isPinned)
            return i;
    }
    return std::nullopt;
}

QString title(const ClipboardItem &item)
{
    switch (item.kind) {
    case ClipboardKind::text:
        if (!item.text)
            return QStringLiteral("Text");
        return QString(*item.text).replace(QLatin1Char('\n'), QLatin1Char(' ')).trimmed();
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
    case ClipboardKind::text: return QStringLiteral("Text");
    case ClipboardKind::url: return QStringLiteral("Link");
    case ClipboardKind::image: return QStringLiteral("Image");
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
