// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringView>
#include <QUrl>

#include <optional>

namespace ledgewise {

// One release in an appcast feed: an RSS item whose enclosure (or a child element)
// carries its version.
struct AppcastItem {
    QString version; // compared with ours
    QString displayVersion; // what the user reads: the short version when there is one
    QUrl releaseNotes; // http(s) only, else empty
    QUrl downloadPage; // the item's link, else its enclosure; http(s) only, else empty
};

namespace Appcast {

// The releases of an appcast feed (RSS 2.0: rss > channel > item). Elements and
// attributes are matched by their local name, whatever namespace prefix the feed gives
// them. Items without a version are left out. No value when the text is not such a feed.
std::optional<QList<AppcastItem>> parse(const QByteArray &feed);

// The release with the highest version; none for an empty list.
std::optional<AppcastItem> newest(const QList<AppcastItem> &items);

// Negative, zero or positive as version `a` is older than, the same as or newer than
// `b`. Numbers compare as numbers ("1.10" > "1.9"), missing parts count as zero
// ("1.0" == "1.0.0"), and a part with letters is a pre-release of the number before
// it ("1.0b2" < "1.0" < "1.0.1").
int compareVersions(QStringView a, QStringView b);

} // namespace Appcast

} // namespace ledgewise
