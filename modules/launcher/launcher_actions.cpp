#include "modules/launcher/launcher_actions.h"

#include "platform/xdg/file_chooser.h"
#include "platform/xdg/program_launcher.h"
#include "platform/xdg/url_opener.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QUrl>

#include <sys/stat.h>

namespace ledgewise::LauncherActions {

QString message(LauncherItem::Kind kind)
{
    switch (kind) {
    case LauncherItem::Kind::application: return QStringLiteral("Choose an app to pin in Ledgewise.");
    case LauncherItem::Kind::file: return QStringLiteral("Choose a file to pin in Ledgewise.");
    case LauncherItem::Kind::website: return {};
    }
    return {};
}

QString symbol(LauncherItem::Kind kind)
{
    switch (kind) {
    case LauncherItem::Kind::application: return QStringLiteral("app");
    case LauncherItem::Kind::file: return QStringLiteral("doc");
    case LauncherItem::Kind::website: return QStringLiteral("globe");
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
    return LauncherItem{QUuid::createUuid(), title, kind,
                        bookmark.isEmpty() ? std::nullopt : std::optional<QByteArray>(bookmark), std::nullopt};
}

std::optional<LauncherItem> pick(LauncherItem::Kind kind, FileChooser &chooser)
{
    if (kind == LauncherItem::Kind::website)
        return std::nullopt;
    const bool application = kind == LauncherItem::Kind::application;
    const QString path = chooser.chooseFile(message(kind), application ? QString::fromLatin1(applicationsFolder) : QString(),
                                            application ? QStringLiteral("Applications (*.desktop)") : QString());
    return itemForFile(kind, path);
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
    const QString title = url.host().isEmpty() ? text : url.host();
    return LauncherItem{QUuid::createUuid(), title, LauncherItem::Kind::website, std::nullopt, text};
}

QByteArray makeBookmark(const QString &path)
{
    struct stat st {};
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return {};
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out << quint8(1) << QFileInfo(path).absoluteFilePath() << quint64(st.st_dev) << quint64(st.st_ino);
    return bytes;
}

std::optional<QString> resolveBookmark(const QByteArray &bookmark)
{
    QDataStream in(bookmark);
    quint8 version = 0;
    QString path;
    quint64 device = 0;
    quint64 inode = 0;
    in >> version >> path >> device >> inode;
    if (in.status() != QDataStream::Ok || version != 1 || path.isEmpty())
        return std::nullopt;
    // The path is what the reference names; a file that is no longer there cannot be opened.
    if (!QFileInfo::exists(path))
        return std::nullopt;
    return path;
}

namespace {

// The value of a key in the [Desktop Entry] group.
std::optional<QString> desktopEntryValue(const QString &path, const QString &key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    bool inGroup = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            inGroup = line == QLatin1String("[Desktop Entry]");
            continue;
        }
        if (inGroup && line.startsWith(key + QLatin1Char('=')))
            return line.mid(key.size() + 1).trimmed();
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> desktopEntryName(const QString &path)
{
    if (!path.endsWith(QLatin1String(".desktop")))
        return std::nullopt;
    const auto name = desktopEntryValue(path, QStringLiteral("Name"));
    if (!name || name->isEmpty())
        return std::nullopt;
    return name;
}

std::optional<QStringList> desktopEntryCommand(const QString &path)
{
    const auto exec = desktopEntryValue(path, QStringLiteral("Exec"));
    if (!exec)
        return std::nullopt;
    // Field codes stand for files or URLs handed over; a pinned app is started without any.
    QString command = *exec;
    command.remove(QRegularExpression(QStringLiteral("%[fFuUdDnNickvm]")));
    command.replace(QLatin1String("%%"), QLatin1String("%"));
    QStringList words = QProcess::splitCommand(command);
    if (words.isEmpty())
        return std::nullopt;
    return words;
}

void open(const LauncherItem &item, UrlOpener &opener, ProgramLauncher &launcher)
{
    if (item.kind == LauncherItem::Kind::website) {
        if (!item.urlString)
            return;
        const QUrl url(*item.urlString, QUrl::StrictMode);
        if (url.isValid() && !url.scheme().isEmpty())
            opener.open(url);
        return;
    }
    if (!item.bookmarkData)
        return;
    const auto path = resolveBookmark(*item.bookmarkData);
    if (!path)
        return;
    if (item.kind == LauncherItem::Kind::application && path->endsWith(QLatin1String(".desktop"))) {
        // Started as the desktop starts it, never opened in an editor.
        if (const auto command = desktopEntryCommand(*path))
            launcher.launch(command->constFirst(), command->mid(1));
        return;
    }
    opener.open(QUrl::fromLocalFile(*path));
}

} // namespace ledgewise::LauncherActions
