// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "modules/launcher/launcher_actions.h"

#include "modules/launcher/desktop_entry.h"

#include "platform/xdg/file_chooser.h"
#include "platform/xdg/program_launcher.h"
#include "platform/xdg/url_opener.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

#include <sys/stat.h>

namespace ledgewise::LauncherActions {

QString message(LauncherItem::Kind kind)
{
    switch (kind) {
    case LauncherItem::Kind::application:
        return QStringLiteral("Choose an app to pin in Ledgewise.");
    case LauncherItem::Kind::file:
        return QStringLiteral("Choose a file to pin in Ledgewise.");
    case LauncherItem::Kind::website:
        return {};
    }
    return {};
}

QString symbol(LauncherItem::Kind kind)
{
    switch (kind) {
    case LauncherItem::Kind::application:
        return QStringLiteral("app");
    case LauncherItem::Kind::file:
        return QStringLiteral("doc");
    case LauncherItem::Kind::website:
        return QStringLiteral("globe");
    }
    return {};
}

std::optional<LauncherItem> itemForFile(LauncherItem::Kind kind, const QString &path)
{
    if (kind == LauncherItem::Kind::website || path.isEmpty())
        return std::nullopt;
    QString title = QFileInfo(path).completeBaseName();
    if (kind == LauncherItem::Kind::application) {
        if (const auto name = desktopEntryName(path))
            title = *name;
    }
    const QByteArray bookmark = makeBookmark(path);
    return LauncherItem { QUuid::createUuid(), title, kind,
        bookmark.isEmpty() ? std::nullopt : std::optional<QByteArray>(bookmark), std::nullopt };
}

void pick(LauncherItem::Kind kind, FileChooser &chooser, QObject *context, Picked picked)
{
    if (kind == LauncherItem::Kind::website) {
        picked(std::nullopt);
        return;
    }
    const bool application = kind == LauncherItem::Kind::application;
    chooser.chooseFile(message(kind), application ? QString::fromLatin1(applicationsFolder) : QString(),
        application ? QStringLiteral("Applications (*.desktop)") : QString(), context,
        [kind, picked = std::move(picked)](const QString &path) { picked(itemForFile(kind, path)); });
}

QString typedHost(const QString &address)
{
    const qsizetype schemeEnd = address.indexOf(QLatin1String("://"));
    const qsizetype start = schemeEnd < 0 ? 0 : schemeEnd + 3;
    qsizetype end = start;
    while (end < address.size() && !QStringView(u"/?#").contains(address.at(end)))
        ++end;
    QString authority = address.mid(start, end - start);
    authority = authority.mid(authority.lastIndexOf(QLatin1Char('@')) + 1); // no user or password
    if (authority.startsWith(QLatin1Char('['))) { // an IPv6 address, shown without its brackets
        const qsizetype close = authority.indexOf(QLatin1Char(']'));
        return close < 0 ? QString() : authority.mid(1, close - 1);
    }
    const qsizetype colon = authority.lastIndexOf(QLatin1Char(':'));
    return colon < 0 ? authority : authority.left(colon); // no port
}

std::optional<LauncherItem> websiteItem(const QString &draft)
{
    QString text = draft.trimmed();
    if (text.isEmpty())
        return std::nullopt;
    if (!text.contains(QLatin1String("://")))
        text.prepend(QLatin1String("https://"));
    // The scheme as typed: QUrl would lower-case it, and "HTTPS://" is refused.
    const QString scheme = text.section(QLatin1String("://"), 0, 0);
    if (scheme != QLatin1String("http") && scheme != QLatin1String("https"))
        return std::nullopt;
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid())
        return std::nullopt;
    // The host as the user typed it: QUrl would lower-case "Example.ORG".
    const QString host = url.host().isEmpty() ? QString() : typedHost(text);
    const QString title = host.isEmpty() ? text : host;
    return LauncherItem { QUuid::createUuid(), title, LauncherItem::Kind::website, std::nullopt, text };
}

QByteArray makeBookmark(const QString &path)
{
    struct stat st {
    };
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << quint8(1) << QFileInfo(path).absoluteFilePath() << quint64(st.st_dev) << quint64(st.st_ino);
    return bytes;
}

std::optional<QString> resolveBookmark(const QByteArray &bookmark)
{
    const BookmarkTarget target = locateBookmark(bookmark);
    if (target.state != BookmarkState::found)
        return std::nullopt;
    return target.path;
}

BookmarkTarget locateBookmark(const QByteArray &bookmark)
{
    QDataStream in(bookmark);
    quint8 version = 0;
    QString path;
    quint64 device = 0;
    quint64 inode = 0;
    in >> version >> path >> device >> inode;
    if (in.status() != QDataStream::Ok || version != 1 || path.isEmpty())
        return {};
    // The path is what the reference names; a file that is no longer there cannot be opened.
    struct stat st {
    };
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return { BookmarkState::missing, path };
    if (quint64(st.st_dev) != device || quint64(st.st_ino) != inode)
        return { BookmarkState::changed, path };
    return { BookmarkState::found, path };
}

namespace {

std::optional<DesktopEntry::Entry> readDesktopEntry(const QString &path)
{
    if (!path.endsWith(QLatin1String(".desktop")))
        return std::nullopt;
    QFile file(path);
    // Desktop Entry files are a few kilobytes; anything far bigger is not one.
    if (!file.open(QIODevice::ReadOnly) || file.size() > 1024 * 1024)
        return std::nullopt;
    return DesktopEntry::parse(QString::fromUtf8(file.readAll()), DesktopEntry::messagesLocale());
}

} // namespace

std::optional<QString> desktopEntryName(const QString &path)
{
    const auto entry = readDesktopEntry(path);
    if (!entry || entry->name.isEmpty())
        return std::nullopt;
    return entry->name;
}

std::optional<ProgramCommand> desktopEntryCommand(const QString &path)
{
    const auto entry = readDesktopEntry(path);
    if (!entry)
        return std::nullopt;
    return DesktopEntry::command(*entry, path);
}

OpenResult open(const LauncherItem &item, UrlOpener &opener, ProgramLauncher &launcher)
{
    if (item.kind == LauncherItem::Kind::website) {
        if (!item.urlString)
            return OpenResult::unavailable;
        const QUrl url(*item.urlString, QUrl::StrictMode);
        if (!url.isValid() || url.scheme().isEmpty())
            return OpenResult::unavailable;
        opener.open(url);
        return OpenResult::opened;
    }
    if (!item.bookmarkData)
        return OpenResult::unavailable;
    const BookmarkTarget target = locateBookmark(*item.bookmarkData);
    if (target.state == BookmarkState::missing)
        return OpenResult::unavailable;
    if (item.kind == LauncherItem::Kind::application && target.path.endsWith(QLatin1String(".desktop"))) {
        // An installed application's Desktop Entry is replaced by every update of its
        // package (a new inode each time): it is followed by its path, and started as
        // the desktop starts it, never opened in an editor.
        if (const auto command = desktopEntryCommand(target.path)) {
            launcher.launch(*command);
            return OpenResult::opened;
        }
        return OpenResult::unavailable;
    }
    // A file is handed to whatever opens its type: only the file the user pinned, never
    // one put in its place since.
    if (target.state == BookmarkState::changed)
        return OpenResult::changed;
    opener.open(QUrl::fromLocalFile(target.path));
    return OpenResult::opened;
}

} // namespace ledgewise::LauncherActions
