#include "dragdrop/drop_payload.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeData>

namespace ledgewise {

namespace {

const QString uriList = QStringLiteral("text/uri-list");
const QString mozillaUrl = QStringLiteral("text/x-moz-url");
const QString plainText = QStringLiteral("text/plain");
const QString utf8Text = QStringLiteral("text/plain;charset=utf-8");
const QString copiedFiles = QStringLiteral("x-special/gnome-copied-files");
const QString legacyLink = QStringLiteral("_NETSCAPE_URL");

// Entries of a text/uri-list: one per line, comments start with '#'. Broken entries
// are skipped one by one; a broken list never loses the good entries.
QList<QUrl> uriListEntries(const QByteArray &bytes)
{
    QList<QUrl> urls;
    for (const QByteArray &line : bytes.split('\n')) {
        const QByteArray entry = line.trimmed();
        if (entry.isEmpty() || entry.startsWith('#'))
            continue;
        const QUrl url = QUrl::fromEncoded(entry, QUrl::StrictMode);
        if (url.isValid() && !url.scheme().isEmpty())
            urls.append(url);
    }
    return urls;
}

// Browsers offer links as UTF-16 "url\ntitle" pairs.
QList<QUrl> mozillaUrls(const QByteArray &bytes)
{
    if (bytes.size() % 2 != 0)
        return {};
    const QString text = QString::fromUtf16(reinterpret_cast<const char16_t *>(bytes.constData()), bytes.size() / 2);
    QList<QUrl> urls;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (qsizetype i = 0; i < lines.size(); i += 2) {
        const QUrl url(lines[i].trimmed(), QUrl::StrictMode);
        if (url.isValid() && !url.scheme().isEmpty() && !url.isLocalFile())
            urls.append(url);
    }
    return urls;
}

// A file manager's list of copied files: "copy" or "cut", then one file URI or
// absolute path per line. Some writers leave the first line out, so only those two
// words are taken as that line; anything else there is the first file.
QList<QUrl> copiedFileUrls(const QByteArray &bytes)
{
    QList<QUrl> files;
    QList<QByteArray> lines = bytes.split('\n');
    if (!lines.isEmpty()) {
        const QByteArray first = lines.constFirst().trimmed();
        if (first == "copy" || first == "cut")
            lines.removeFirst();
    }
    for (const QByteArray &line : std::as_const(lines)) {
        const QByteArray entry = line.trimmed();
        if (entry.isEmpty())
            continue;
        const QUrl url = entry.startsWith('/') ? QUrl::fromLocalFile(QString::fromUtf8(entry))
                                               : QUrl::fromEncoded(entry, QUrl::StrictMode);
        if (url.isValid() && url.isLocalFile())
            files.append(url);
    }
    return files;
}

std::optional<QImage> readImage(const QMimeData &data)
{
    QStringList order = {QStringLiteral("image/png"), QStringLiteral("image/tiff")};
    for (const QString &format : data.formats()) {
        if (format.startsWith(QLatin1String("image/")) && !order.contains(format))
            order.append(format);
    }
    for (const QString &format : std::as_const(order)) {
        if (!data.hasFormat(format))
            continue;
        QImage image;
        if (image.loadFromData(data.data(format)) && !image.isNull())
            return image;
    }
    // Images dragged within Qt applications travel as an image object.
    if (data.hasImage()) {
        const QImage image = qvariant_cast<QImage>(data.imageData());
        if (!image.isNull())
            return image;
    }
    return std::nullopt;
}

// Plain text only from the plain-text types. Qt's own text reading falls back to the
// URI list, which would turn a broken link list into a text drop.
std::optional<QString> readPlainText(const QMimeData &data)
{
    for (const QString &format : {utf8Text, plainText}) {
        if (!data.hasFormat(format))
            continue;
        const QString text = QString::fromUtf8(data.data(format));
        if (!text.isEmpty())
            return text;
    }
    return std::nullopt;
}

} // namespace

std::optional<DropPayload> DropPayload::from(const QMimeData &data)
{
    const QList<QUrl> listed = data.hasFormat(uriList) ? uriListEntries(data.data(uriList)) : QList<QUrl>();

    QList<QUrl> files;
    QList<QUrl> links;
    for (const QUrl &url : listed)
        (url.isLocalFile() ? files : links).append(url);
    if (!files.isEmpty())
        return DropPayload{Kind::files, files, {}, std::nullopt, std::nullopt};

    if (links.isEmpty() && data.hasFormat(mozillaUrl))
        links = mozillaUrls(data.data(mozillaUrl));
    if (!links.isEmpty())
        return DropPayload{Kind::urls, {}, links, std::nullopt, std::nullopt};

    if (data.hasFormat(copiedFiles)) {
        const QList<QUrl> copied = copiedFileUrls(data.data(copiedFiles));
        if (!copied.isEmpty())
            return DropPayload{Kind::files, copied, {}, std::nullopt, std::nullopt};
    }

    if (auto image = readImage(data))
        return DropPayload{Kind::image, {}, {}, std::nullopt, std::move(image)};

    if (auto text = readPlainText(data))
        return DropPayload{Kind::text, {}, {}, std::move(text), std::nullopt};
    return std::nullopt;
}

QStringList DropPayload::registeredTypes()
{
    QStringList types = {uriList, mozillaUrl, plainText, utf8Text,
                         QStringLiteral("image/png"), QStringLiteral("image/tiff")};
    for (const QByteArray &type : QImageReader::supportedMimeTypes()) {
        const QString name = QString::fromLatin1(type);
        if (!types.contains(name))
            types.append(name);
    }
    types << copiedFiles << legacyLink;
    return types;
}

bool DropPayload::offersRegisteredType(const QMimeData &data)
{
    const QStringList offered = data.formats();
    for (const QString &type : registeredTypes()) {
        if (offered.contains(type))
            return true;
    }
    return data.hasImage();
}

QString fileName(const QUrl &fileUrl)
{
    // A folder's URL may end in a slash; its name is the last part all the same.
    const QString path = QDir::cleanPath(fileUrl.toLocalFile());
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() ? path : name; // the root folder is called "/"
}

QVariantList DropPayload::shareItems() const
{
    QVariantList items;
    if (!fileURLs.isEmpty()) {
        for (const QUrl &url : fileURLs)
            items.append(url);
    } else if (!urls.isEmpty()) {
        for (const QUrl &url : urls)
            items.append(url);
    } else if (image) {
        items.append(*image);
    } else if (text) {
        items.append(*text);
    }
    return items;
}

QString DropPayload::summary() const
{
    if (!fileURLs.isEmpty()) {
        if (fileURLs.size() == 1)
            return fileName(fileURLs.constFirst());
        return QStringLiteral("%1 files").arg(fileURLs.size());
    }
    if (!urls.isEmpty() && !urls.constFirst().host().isEmpty())
        return urls.constFirst().host();
    if (image)
        return QStringLiteral("Image");
    if (text)
        return *text;
    return QStringLiteral("Drop");
}

} // namespace ledgewise
