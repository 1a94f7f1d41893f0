// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Other applications on the test's X display: xdotool for the pointer and keyboard,
// xclip as the application that copies and pastes.

#include <QByteArray>
#include <QProcess>
#include <QSignalSpy>
#include <QString>
#include <QStringList>

namespace ledgewise::testing {

// Runs xdotool to its end; its output, trimmed.
inline QString xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// Another application copies `bytes` (as `target` when given); true once it owns the
// clipboard.
inline bool copyElsewhere(const QByteArray &bytes, const QString &target = QString())
{
    QStringList arguments = { QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i") };
    if (!target.isEmpty())
        arguments << QStringLiteral("-t") << target;
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"), arguments);
    if (!xclip.waitForStarted())
        return false;
    xclip.write(bytes);
    xclip.closeWriteChannel();
    return xclip.waitForFinished(5000) && xclip.exitCode() == 0;
}

// What another application gets when it pastes (`target`, or xclip's choice). The event
// loop keeps running meanwhile, so this process can serve the selection itself.
inline QByteArray pasteElsewhere(const QString &target = QString())
{
    QStringList arguments = { QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o") };
    if (!target.isEmpty())
        arguments << QStringLiteral("-t") << target;
    QProcess xclip;
    QSignalSpy finished(&xclip, &QProcess::finished);
    xclip.start(QStringLiteral("xclip"), arguments);
    if (!finished.wait(10000))
        return "<xclip did not finish>";
    return xclip.readAllStandardOutput();
}

// The user, as a process of its own: once a window titled exactly `title` shows, it
// clicks inside it in its middle and near two of its corners, a little apart. Being
// another process, it goes on whatever the application's event loop is doing (a test
// that drives its own application waits for `user` to finish).
inline bool clickInsideOnceShown(QProcess &user, const QString &title)
{
    static const char script[] = R"sh(
id=$(xdotool search --sync --onlyvisible --name "^$1\$" | head -n1)
[ -n "$id" ] || exit 1
eval "$(xdotool getwindowgeometry --shell "$id")"
for point in "$((X + WIDTH / 2)) $((Y + HEIGHT / 2))" "$((X + 8)) $((Y + HEIGHT - 8))" "$((X + WIDTH - 8)) $((Y + 8))"; do
  xdotool mousemove $point click 1 || exit 1
  sleep 0.3 # apart, so that no two clicks make a double click
done
)sh";
    user.start(
        QStringLiteral("sh"), { QStringLiteral("-c"), QString::fromLatin1(script), QStringLiteral("user"), title });
    return user.waitForStarted();
}

} // namespace ledgewise::testing
