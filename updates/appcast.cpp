// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "updates/appcast.h"

#include <QXmlStreamReader>

#include <algorithm>

namespace ledgewise::Appcast {

namespace {

// A version from a feed is a short token; anything longer is not shown or compared.
constexpr qsizetype maximumVersionLength = 40;

QString cleanVersion(const QString &raw)
{
    const QString version = raw.simplified();
    return version.size() <= maximumVersionLength ? version : QString();
}

// Only web addresses: the download button and the notes link open a browser, never a
// file or a program the feed names.
QUrl webAddress(const QString &raw)
{
    const QUrl url(raw.trimmed(), QUrl::StrictMode);
    const QString scheme = url.scheme().toLower();
    return url.isValid() && !url.host().isEmpty()
            && (scheme == QLatin1String("https") || scheme == QLatin1String("http"))
        ? url
        : QUrl();
}

AppcastItem readItem(QXmlStreamReader &reader)
{
    AppcastItem item;
    QString elementVersion;
    QString elementShortVersion;
    QString enclosureVersion;
    QString enclosureShortVersion;
    QUrl link;
    QUrl enclosure;
    while (reader.readNextStartElement()) {
        const QStringView name = reader.name();
        if (name == QLatin1String("enclosure")) {
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute &attribute : attributes) {
                if (attribute.name() == QLatin1String("version"))
                    enclosureVersion = attribute.value().toString();
                else if (attribute.name() == QLatin1String("shortVersionString"))
                    enclosureShortVersion = attribute.value().toString();
                else if (attribute.name() == QLatin1String("url"))
                    enclosure = webAddress(attribute.value().toString());
            }
            reader.skipCurrentElement();
        } else if (name == QLatin1String("version")) {
            elementVersion = reader.readElementText(QXmlStreamReader::SkipChildElements);
        } else if (name == QLatin1String("shortVersionString")) {
            elementShortVersion = reader.readElementText(QXmlStreamReader::SkipChildElements);
        } else if (name == QLatin1String("releaseNotesLink")) {
            item.releaseNotes = webAddress(reader.readElementText(QXmlStreamReader::SkipChildElements));
        } else if (name == QLatin1String("link")) {
            link = webAddress(reader.readElementText(QXmlStreamReader::SkipChildElements));
        } else {
            reader.skipCurrentElement();
        }
    }
    item.version = cleanVersion(!elementVersion.trimmed().isEmpty() ? elementVersion : enclosureVersion);
    const QString shortVersion
        = cleanVersion(!elementShortVersion.trimmed().isEmpty() ? elementShortVersion : enclosureShortVersion);
    item.displayVersion = shortVersion.isEmpty() ? item.version : shortVersion;
    item.downloadPage = !link.isEmpty() ? link : enclosure;
    return item;
}

// A version cut into numbers and runs of letters; separators only separate.
struct Part {
    bool number = false;
    QStringView text;
};

QList<Part> partsOf(QStringView version)
{
    QList<Part> parts;
    qsizetype i = 0;
    while (i < version.size()) {
        const QChar c = version[i];
        if (!c.isLetterOrNumber()) {
            ++i;
            continue;
        }
        const bool digit = c.isDigit();
        const qsizetype start = i;
        while (i < version.size() && version[i].isLetterOrNumber() && version[i].isDigit() == digit)
            ++i;
        parts.append({ digit, version.mid(start, i - start) });
    }
    return parts;
}

int compareNumbers(QStringView a, QStringView b)
{
    // As text without leading zeros, so no number is too long to compare.
    while (a.size() > 1 && a.front() == QLatin1Char('0'))
        a = a.mid(1);
    while (b.size() > 1 && b.front() == QLatin1Char('0'))
        b = b.mid(1);
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    const int order = a.compare(b);
    return order < 0 ? -1 : (order > 0 ? 1 : 0);
}

bool isZero(const Part &part)
{
    return part.number
        && std::all_of(part.text.begin(), part.text.end(), [](QChar c) { return c == QLatin1Char('0'); });
}

} // namespace

std::optional<QList<AppcastItem>> parse(const QByteArray &feed)
{
    QXmlStreamReader reader(feed);
    if (!reader.readNextStartElement() || reader.name() != QLatin1String("rss"))
        return std::nullopt;
    QList<AppcastItem> items;
    bool sawChannel = false;
    while (reader.readNextStartElement()) {
        if (reader.name() != QLatin1String("channel")) {
            reader.skipCurrentElement();
            continue;
        }
        sawChannel = true;
        while (reader.readNextStartElement()) {
            if (reader.name() != QLatin1String("item")) {
                reader.skipCurrentElement();
                continue;
            }
            AppcastItem item = readItem(reader);
            if (!item.version.isEmpty())
                items.append(std::move(item));
        }
    }
    if (reader.hasError() || !sawChannel)
        return std::nullopt;
    return items;
}

std::optional<AppcastItem> newest(const QList<AppcastItem> &items)
{
    if (items.isEmpty())
        return std::nullopt;
    // The first of equal versions: feeds list the newest first.
    const auto best = std::max_element(items.cbegin(), items.cend(),
        [](const AppcastItem &a, const AppcastItem &b) { return compareVersions(a.version, b.version) < 0; });
    return *best;
}

int compareVersions(QStringView a, QStringView b)
{
    const QList<Part> left = partsOf(a);
    const QList<Part> right = partsOf(b);
    const qsizetype common = std::min(left.size(), right.size());
    for (qsizetype i = 0; i < common; ++i) {
        const Part &l = left[i];
        const Part &r = right[i];
        if (l.number && r.number) {
            if (const int order = compareNumbers(l.text, r.text))
                return order;
        } else if (l.number != r.number) {
            // A number where the other has letters: the letters are a pre-release.
            return l.number ? 1 : -1;
        } else if (const int order = l.text.compare(r.text, Qt::CaseInsensitive)) {
            return order < 0 ? -1 : 1;
        }
    }
    // The longer one goes on: with letters it is a pre-release, with zeros the same,
    // with any other number newer.
    const QList<Part> &longer = left.size() > right.size() ? left : right;
    const int sign = left.size() > right.size() ? 1 : -1;
    for (qsizetype i = common; i < longer.size(); ++i) {
        if (!longer[i].number)
            return -sign;
        if (!isZero(longer[i]))
            return sign;
    }
    return 0;
}

} // namespace ledgewise::Appcast
