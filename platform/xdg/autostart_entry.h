// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace ledgewise {

// The Desktop Entry that starts Ledgewise when the user logs in (XDG Autostart), and
// how to read one back. Pure text rules; autostart.h does the file work.
namespace AutostartEntry {

// The file's whole text, starting `program` (an absolute path) with no arguments.
QByteArray text(const QString &program);

// `program` as the Exec key's value: quoted and escaped where the Desktop Entry rules
// want it, so a path with spaces, quotes, dollars or percent signs still starts.
QString execValue(const QString &program);

// Whether an entry with these contents starts Ledgewise at login: every entry does
// unless its main group says Hidden=true (the desktop's way of turning one off).
bool isEnabled(const QByteArray &contents);

} // namespace AutostartEntry

} // namespace ledgewise
