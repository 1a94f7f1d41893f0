// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_payload.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeData>

#include <atomic>

namespace ledgewise {

namespace {

const QString uriList = QStringLiteral("text/uri-list");
const QString mozillaUrl = QStringLiteral("text/x-moz-url");
const QString plainText = QStringLiteral("text/plain");
const QString utf8Text = QStringLiteral("text/plain;charset=utf-8");
const QString copiedFiles = QStringLiteral("x-special/gnome-copied-files");
const QString legacyLink = QStringLiteral("_NETSCAPE_URL");
const QString secretHint = QStringLiteral("x-kde-passwordManagerHint");

std::atomic<int> imageDecodes { 0 };

bool decodeInto(QImage &image, const QByteArray &bytes)
{
    ++imageDecodes;
    return image.loadFromData(bytes) && !image.isNull();
}

// A file URL as the payload keeps it: "localhost" is this machine, said the short way.
QUrl withoutLocalHost(QUrl url)
{
    if (url.scheme() == QLatin1String("file")
        && url.host().compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0)
        url.setHost(QString());
    return url;
}

// Entries of a text/uri-list: one per line, comments start with '#'. Broken entries
// are skipped one by one; a broken list never loses the good entries.
QList<QUrl> uriListEntries(const QByteArray &bytes)
{
    QList<QUrl> urls;
    for (const QByteArray &line : bytes.split('\n')) {
        const QByteArray entry = line.trimmed();
        if (entry.isEmpty() || entry.startsWith('#'))
            continue;
        const QUrl url = withoutLocalHost(QUrl::fromEncoded(entry, QUrl::StrictMode));
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
                                               : withoutLocalHost(QUrl::fromEncoded(entry, QUrl::StrictMode));
        if (url.isValid() && isAbsoluteLocalFile(url))
            files.append(url);
    }
    return files;
}

// The first image type offered, in order of preference: PNG, TIFF, then any other.
QStringList imageTypesOffered(const QMimeData &data)
{
    QStringList order = { QStringLiteral("image/png"), QStringLiteral("image/tiff") };
    for (const QString &format : data.formats()) {
        if (format.startsWith(QLatin1String("image/")) && !order.contains(format))
            order.append(format);
    }
    order.removeIf([&data](const QString &format) { return !data.hasFormat(format); });
    return order;
}

// The image, decoded; with `defer`, the bytes of the first image type that has any,
// beside a null image.
std::optional<QImage> readImage(const QMimeData &data, DropPayload::ImageReading reading, QByteArray &encoded)
{
    for (const QString &format : imageTypesOffered(data)) {
        const QByteArray bytes = data.data(format);
        if (reading == DropPayload::ImageReading::defer) {
            if (bytes.isEmpty())
                continue;
            encoded = bytes;
            return QImage();
        }
        QImage image;
        if (decodeInto(image, bytes))
            return image;
    }
    // Images dragged within Qt applications travel as an image object, already decoded.
    if (data.hasImage()) {
        const QImage image = qvariant_cast<QImage>(data.imageData());
        if (!image.isNull())
            return image;
    }
    return std::nullopt;
}

// Plain text only from the plain-text types. Qt's own text reading falls back to the
// URI list, which would turn a broken link list into a text drop. The bytes are kept as
// offered: nothing is converted while a drag passes or when it is taken.
DroppedText readPlainText(const QMimeData &data)
{
    for (const QString &format : { utf8Text, plainText }) {
        if (!data.hasFormat(format))
            continue;
        if (auto text = DroppedText::fromUtf8(data.data(format)))
            return text;
    }
    return std::nullopt;
}

} // namespace

std::optional<DropPayload> DropPayload::from(const QMimeData &data, ImageReading reading)
{
    auto payload = read(data, reading);
    if (payload && data.hasFormat(secretHint))
        payload->secret = data.data(secretHint).trimmed() == "secret";
    return payload;
}

std::optional<DropPayload> DropPayload::read(const QMimeData &data, ImageReading reading)
{
    const QList<QUrl> listed = data.hasFormat(uriList) ? uriListEntries(data.data(uriList)) : QList<QUrl>();

    // A relative file URL, or one on another host, is no file here and no link either:
    // resolving "file:." against the working folder would hand over whatever that is.
    QList<QUrl> files;
    QList<QUrl> links;
    for (const QUrl &url : listed) {
        if (isAbsoluteLocalFile(url))
            files.append(url);
        else if (!url.isLocalFile())
            links.append(url);
    }
    if (!files.isEmpty())
        return DropPayload { Kind::files, files, {}, std::nullopt, std::nullopt };

    if (links.isEmpty() && data.hasFormat(mozillaUrl))
        links = mozillaUrls(data.data(mozillaUrl));
    if (!links.isEmpty())
        return DropPayload { Kind::urls, {}, links, std::nullopt, std::nullopt };

    if (data.hasFormat(copiedFiles)) {
        const QList<QUrl> copied = copiedFileUrls(data.data(copiedFiles));
        if (!copied.isEmpty())
            return DropPayload { Kind::files, copied, {}, std::nullopt, std::nullopt };
    }

    QByteArray encoded;
    if (auto image = readImage(data, reading, encoded)) {
        DropPayload payload { Kind::image, {}, {}, std::nullopt, std::move(image) };
        payload.encodedImage = encoded;
        return payload;
    }

    if (auto text = readPlainText(data))
        return DropPayload { Kind::text, {}, {}, std::move(text), std::nullopt };
    return std::nullopt;
}

QStringList DropPayload::registeredTypes()
{
    QStringList types
        = { uriList, mozillaUrl, plainText, utf8Text, QStringLiteral("image/png"), QStringLiteral("image/tiff") };
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

bool DropPayload::decodeImage()
{
    if (kind != Kind::image || encodedImage.isEmpty())
        return kind != Kind::image || (image && !image->isNull());
    QImage decoded;
    if (!decodeInto(decoded, encodedImage))
        return false;
    image = decoded;
    encodedImage.clear();
    return true;
}

int DropPayload::imageDecodeCount()
{
    return imageDecodes.load();
}

DroppedText::DroppedText(QString text)
    : m_present(true)
    , m_decoded(std::move(text))
{ }

DroppedText::DroppedText(std::optional<QString> text)
    : m_present(text.has_value())
    , m_decoded(std::move(text))
{ }

DroppedText DroppedText::fromUtf8(QByteArray utf8)
{
    DroppedText text;
    // A byte order mark alone decodes to nothing; the first bytes tell that cheaply.
    text.m_present = !QString::fromUtf8(utf8.left(16)).isEmpty();
    if (text.m_present) {
        text.m_utf8Size = utf8.size();
        text.m_utf8 = std::move(utf8);
    }
    return text;
}

const QString &DroppedText::value() const
{
    if (!m_decoded) {
        m_decoded = QString::fromUtf8(m_utf8);
        m_utf8 = QByteArray(); // the text is kept once, decoded
    }
    return *m_decoded;
}

QByteArray DroppedText::utf8() const
{
    return m_decoded ? m_decoded->toUtf8() : m_utf8;
}

qsizetype DroppedText::utf8Size() const
{
    if (m_utf8Size < 0)
        m_utf8Size = m_decoded ? m_decoded->toUtf8().size() : m_utf8.size();
    return m_utf8Size;
}

QString DroppedText::start(qsizetype length) const
{
    if (m_decoded || m_utf8.size() <= 4 * (length + 2))
        return value().left(length + 1);
    // A UTF-16 unit takes at most three bytes (a broken byte becomes one unit), so these
    // bytes hold more than `length` units. The cut goes back to the start of a
    // character, so the last one decoded is whole.
    qsizetype end = 4 * (length + 2);
    while (end > 0 && (static_cast<unsigned char>(m_utf8.at(end)) & 0xC0) == 0x80)
        --end;
    return QString::fromUtf8(m_utf8.constData(), end).left(length + 1);
}

bool isAbsoluteLocalFile(const QUrl &url)
{
    return url.isValid() && url.scheme() == QLatin1String("file") && url.host().isEmpty()
        && url.path().startsWith(QLatin1Char('/'));
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

namespace {

// The summary shows at most two lines: a text of many megabytes would be laid out
// whole by the view only to be elided, holding the surface meanwhile.
constexpr qsizetype summaryTextLimit = 1000;
// A name longer than this keeps its start and its end (where the extension is).
constexpr qsizetype summaryNameLimit = 120;
const QString ellipsis = QStringLiteral("\u2026");

// Cut before `at`, never between the two halves of a surrogate pair.
qsizetype cutPoint(const QString &text, qsizetype at)
{
    return at > 0 && at < text.size() && text.at(at).isLowSurrogate() ? at - 1 : at;
}

QString cutText(const DroppedText &dropped)
{
    // Only the start is decoded: the summary never converts a text of many megabytes.
    const QString text = dropped.start(summaryTextLimit);
    if (text.size() <= summaryTextLimit)
        return text;
    return text.left(cutPoint(text, summaryTextLimit)) + ellipsis;
}

// A file name may hold line breaks and other control characters, and be thousands of
// characters long: shown on one line, as spaces, with its middle left out.
QString oneLineName(const QString &name)
{
    QString shown = name;
    if (shown.size() > summaryNameLimit) {
        const qsizetype head = cutPoint(shown, summaryNameLimit / 2);
        const qsizetype tailStart = cutPoint(shown, shown.size() - (summaryNameLimit / 2 - 1));
        shown = shown.left(head) + ellipsis + shown.mid(tailStart);
    }
    for (QChar &c : shown) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = QLatin1Char(' ');
    }
    return shown;
}

} // namespace

QString DropPayload::summary() const
{
    if (!fileURLs.isEmpty()) {
        if (fileURLs.size() == 1)
            return oneLineName(fileName(fileURLs.constFirst()));
        return QStringLiteral("%1 files").arg(fileURLs.size());
    }
    if (!urls.isEmpty() && !urls.constFirst().host().isEmpty())
        return oneLineName(urls.constFirst().host());
    if (image)
        return QStringLiteral("Image");
    if (text)
        return cutText(text);
    return QStringLiteral("Drop");
}

} // namespace ledgewise
