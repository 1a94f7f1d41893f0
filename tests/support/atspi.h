// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Ledgewise as a screen reader meets it, over the accessibility bus (AT-SPI): controls
// found by role and name and pressed, what is on screen read as "role|name" lines, and
// the start most of these tests want (still, classic surfaces that open at once). The
// Python probes live beside this header (atspi_press.py, atspi_driver.py).

#include "tests/support/ledgewise_process.h"

#include <QProcess>
#include <QStringList>

namespace ledgewise::testing {

inline QString atspiScript(const QString &name)
{
    return qEnvironmentVariable("LEDGEWISE_SOURCE_DIR") + QStringLiteral("/tests/support/") + name;
}

inline void pointerTo(int x, int y)
{
    xdotool({ QStringLiteral("mousemove"), QString::number(x), QString::number(y) });
}

// Presses a control of Ledgewise found by role and name; what the probe said
// ("pressed", or what it could not find).
inline QByteArray press(const QString &role, const QString &name)
{
    QProcess probe;
    probe.setProcessChannelMode(QProcess::MergedChannels);
    probe.start(QStringLiteral("/usr/bin/python3"),
        { atspiScript(QStringLiteral("atspi_press.py")), QStringLiteral("Ledgewise"), role, name });
    probe.waitForFinished(30000);
    return probe.readAll().trimmed();
}

// What a screen reader can read of Ledgewise now: every node on screen, "role|name".
inline QStringList readTree()
{
    QProcess probe;
    probe.start(QStringLiteral("/usr/bin/python3"),
        { atspiScript(QStringLiteral("atspi_press.py")), QStringLiteral("--tree"), QStringLiteral("Ledgewise") });
    probe.waitForFinished(30000);
    return QString::fromUtf8(probe.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

// The part of what was read that belongs to one surface ("left" or "right"): the lines
// after its frame, up to the next frame.
inline QStringList surfaceLines(const QStringList &read, const QString &side)
{
    const qsizetype frame = read.indexOf(QStringLiteral("frame|Ledgewise %1 surface").arg(side));
    QStringList lines;
    for (qsizetype index = frame + 1;
         frame >= 0 && index < read.size() && !read[index].startsWith(QLatin1String("frame|")); ++index)
        lines << read[index];
    return lines;
}

// Classic corners and no animation: the surfaces open at once and keep their square
// tops, so a pointer moved into one stays in it. The next start finds these.
inline void storeStillClassicPreferences()
{
    Preferences preferences;
    preferences.style = NotchStyle::classic;
    preferences.animateInterface = false;
    storePreferences(preferences);
}

// A screen reader's hands for a long run: one process (atspi_driver.py) that finds
// controls of Ledgewise by role and name and presses them, reads them or says where
// they are, so hundreds of presses do not start Python hundreds of times.
class ScreenReader
{
public:
    ScreenReader()
    {
        m_driver.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_driver.start(QStringLiteral("/usr/bin/python3"),
            { atspiScript(QStringLiteral("atspi_driver.py")), QStringLiteral("Ledgewise") });
    }
    ~ScreenReader()
    {
        m_driver.closeWriteChannel();
        if (!m_driver.waitForFinished(5000))
            m_driver.kill();
        m_driver.waitForFinished();
    }
    ScreenReader(const ScreenReader &) = delete;
    ScreenReader &operator=(const ScreenReader &) = delete;

    QString ask(const QString &command, const QString &role, const QString &name, const QString &argument = QString())
    {
        QStringList fields = { command, role, name };
        if (!argument.isNull())
            fields << argument;
        m_driver.write((fields.join(QLatin1Char('\t')) + QLatin1Char('\n')).toUtf8());
        while (!m_driver.canReadLine()) {
            if (!m_driver.waitForReadyRead(30000))
                return QStringLiteral("<no answer>");
        }
        return QString::fromUtf8(m_driver.readLine()).chopped(1);
    }

private:
    QProcess m_driver;
};

} // namespace ledgewise::testing
