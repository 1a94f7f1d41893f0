// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/preferences.h"
#include "platform/xdg/program_launcher.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>

class QObject;

namespace ledgewise {

class UrlOpener;
class FileChooser;

namespace LauncherActions {

// The folder applications are pinned from: where Desktop Entry files live.
inline constexpr auto applicationsFolder = "/usr/share/applications";

QString message(LauncherItem::Kind kind);
QString symbol(LauncherItem::Kind kind);

// An entry for a chosen file: titled by its name without the extension (a Desktop
// Entry by its Name), with a reference that finds it again. Nothing for websites.
std::optional<LauncherItem> itemForFile(LauncherItem::Kind kind, const QString &path);
// Shows the chooser for `kind` and returns at once; `picked` is called later with the
// entry for the chosen file, or nothing when cancelled (at once for websites, which
// are never chosen). Never called once `context` is gone.
using Picked = std::function<void(std::optional<LauncherItem>)>;
void pick(LauncherItem::Kind kind, FileChooser &chooser, QObject *context, Picked picked);

// The typed address rule: trimmed, "https://" put in front when no "://" is there,
// http or https only (exactly, in lower case); titled by its host.
std::optional<LauncherItem> websiteItem(const QString &draft);
// The host part of an address exactly as typed, without user, password, port or the
// brackets of an IPv6 address.
QString typedHost(const QString &address);

// The opaque reference to a file (path, device and inode) and the way back to the path
// of that very file (nothing when it is gone or another file is in its place).
QByteArray makeBookmark(const QString &path);
std::optional<QString> resolveBookmark(const QByteArray &bookmark);

// What a reference finds now: the file it was made for, nothing at its path (or a
// reference that does not read), or another file at its path (another device or
// inode: replaced, or moved away and something else put there).
enum class BookmarkState { found, missing, changed };
struct BookmarkTarget {
    BookmarkState state = BookmarkState::missing;
    QString path; // the path the reference names, when it reads
};
BookmarkTarget locateBookmark(const QByteArray &bookmark);

// A Desktop Entry's Name (translated), and the command its Exec, Path and Terminal
// keys start. Nothing when the file is not one or its Exec line is broken.
std::optional<QString> desktopEntryName(const QString &path);
std::optional<ProgramCommand> desktopEntryCommand(const QString &path);

// Opens an entry: an application is started as the desktop starts it, a file opens in
// its default application, a site in the default browser. Failures are silent; the
// caller tells the user about a changed file.
// What opening an entry came to. A pinned file is opened only while it is the very
// file that was pinned; another file put in its place is left alone (`changed`).
enum class OpenResult { opened, unavailable, changed };
OpenResult open(const LauncherItem &item, UrlOpener &opener, ProgramLauncher &launcher);

} // namespace LauncherActions
} // namespace ledgewise
