#pragma once

// Ledgewise as a user starts it: its own process, with its settings file written first
// and the accessibility bridge on, so a screen reader (and a test) can read it.

#include "app/preferences_codec.h"
#include "tests/support/x11_tools.h"

#include <QDir>
#include <QProcess>
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
    return xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                    QStringLiteral("Ledgewise %1 surface").arg(side)})
        .section(QLatin1Char('\n'), 0, 0);
}

} // namespace ledgewise::testing
