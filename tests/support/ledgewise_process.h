// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Ledgewise as a user starts it: its own process, with its settings file written first
// and the accessibility bridge on, so a screen reader (and a test) can read it.

#include "app/preferences_codec.h"
#include "tests/support/x11_tools.h"

#include <QDir>
#include <QProcess>
#include <QRect>
#include <QSettings>
#include <QStandardPaths>

namespace ledgewise::testing {

inline QString settingsPath()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(QStringLiteral("Ledgewise/Ledgewise.conf"));
}

// The preferences the next start of Ledgewise finds.
inline void storePreferences(const Preferences &preferences)
{
    QSettings settings(settingsPath(), QSettings::NativeFormat);
    settings.setValue(QStringLiteral("ledgewise.preferences"), *encodePreferences(preferences));
}

// What a run of the program to its end left: its exit code (-2 after a crash, -1 when it
// did not end in 20 s) and what it wrote.
struct Finished {
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
};

// Runs the built program (LEDGEWISE_EXECUTABLE) with `arguments` to its end.
inline Finished runLedgewise(const QStringList &arguments)
{
    QProcess process;
    process.start(qEnvironmentVariable("LEDGEWISE_EXECUTABLE"), arguments);
    Finished result;
    if (!process.waitForFinished(20000))
        return result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

// Starts the built program (LEDGEWISE_EXECUTABLE) with the accessibility bridge on.
inline bool startLedgewise(QProcess &app)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
    app.setProcessEnvironment(environment);
    app.start(qEnvironmentVariable("LEDGEWISE_EXECUTABLE"), {});
    return app.waitForStarted(10000);
}

// The X window of a side's surface ("left" or "right") once it is on screen; empty before.
inline QString surfaceWindow(const QString &side)
{
    return xdotool({ QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                       QStringLiteral("Ledgewise %1 surface").arg(side) })
        .section(QLatin1Char('\n'), 0, 0);
}

// Where a side's surface is on screen, as the X server has it; empty before it shows.
inline QRect surfaceGeometry(const QString &side)
{
    const QString window = surfaceWindow(side);
    if (window.isEmpty())
        return {};
    QRect geometry;
    const QStringList lines
        = xdotool({ QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), window }).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const int value = line.section(QLatin1Char('='), 1).toInt();
        if (line.startsWith(QLatin1String("X=")))
            geometry.moveLeft(value);
        else if (line.startsWith(QLatin1String("Y=")))
            geometry.moveTop(value);
        else if (line.startsWith(QLatin1String("WIDTH=")))
            geometry.setWidth(value);
        else if (line.startsWith(QLatin1String("HEIGHT=")))
            geometry.setHeight(value);
    }
    return geometry;
}

} // namespace ledgewise::testing
