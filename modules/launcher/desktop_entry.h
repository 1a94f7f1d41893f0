// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/xdg/program_launcher.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace ledgewise::DesktopEntry {

// What starting a pinned application needs from its Desktop Entry file: the
// [Desktop Entry] group's values, unescaped (\s \n \t \r \\), the name translated.
struct Entry {
    QString name;
    QString exec;
    QString icon;
    QString workingDirectory; // the Path key
    bool terminal = false;
};

// The [Desktop Entry] group of a file's text, with Name taken in `locale`
// ("de_DE@euro", "de_DE", "de@euro", "de", then untranslated). Nothing when the
// text has no such group.
std::optional<Entry> parse(const QString &text, const QString &locale);

// The locale of messages, as Desktop Entry keys name it: LC_ALL, LC_MESSAGES or LANG
// without its encoding ("de_DE.UTF-8@euro" gives "de_DE@euro").
QString messagesLocale();

// The Exec line split into the program and its arguments as the desktop does it for a
// start without files: double quotes group (inside them \" \` \$ \\ stand for the
// character), "%%" is "%", %f %F %u %U (and the deprecated %d %D %n %N %v %m) are
// dropped, %i is "--icon ICON" when there is an icon, %c the name, %k the entry's
// path. Nothing when the line is broken (an unbalanced quote, no program).
std::optional<QStringList> execArguments(const Entry &entry, const QString &entryPath);

// The whole command: program, arguments, the Path key as working directory, and
// whether it runs in a terminal.
std::optional<ProgramCommand> command(const Entry &entry, const QString &entryPath);

} // namespace ledgewise::DesktopEntry
