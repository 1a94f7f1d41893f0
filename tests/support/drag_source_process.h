// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Another application to drag from, as its own process: the Qt one
// (tests/support/drag_source.cpp, DRAG_SOURCE) or the GTK 3 one
// (tests/support/gtk_drag_source.py, GTK_DRAG_SOURCE), which browsers and file
// managers resemble. The pointer is the user's hand, moved with xdotool.

#include "tests/support/x11_tools.h"

#include <QPoint>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>

#include <initializer_list>

namespace ledgewise::testing {

class DragSourceProcess
{
public:
    enum class Toolkit { qt, gtk };

    // The window is 100 x 100 at `at`; `text` is offered as plain text and, from the GTK
    // source, `uri` as a link list as well.
    DragSourceProcess(Toolkit toolkit, QPoint at, const QString &text, const QString &uri = QString())
        : m_at(at)
    {
        QStringList arguments = { QString::number(at.x()), QString::number(at.y()), text };
        if (toolkit == Toolkit::gtk) {
            // No accessibility bus to look for: GTK would wait for one on a private session.
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(QStringLiteral("NO_AT_BRIDGE"), QStringLiteral("1"));
            m_process.setProcessEnvironment(environment);
            if (!uri.isEmpty())
                arguments << uri;
            m_process.start(QStringLiteral("/usr/bin/python3"),
                QStringList { QStringLiteral("-u"), qEnvironmentVariable("GTK_DRAG_SOURCE") } + arguments);
        } else {
            m_process.start(qEnvironmentVariable("DRAG_SOURCE"), arguments);
        }
        m_ready = QTest::qWaitFor(
                      [this] { return m_process.canReadLine() || m_process.state() == QProcess::NotRunning; }, 20000)
            && m_process.readLine().trimmed() == "ready";
    }

    ~DragSourceProcess()
    {
        // A test that failed mid-drag must not leave the button down for the next one.
        xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
        m_process.kill();
        m_process.waitForFinished();
    }

    DragSourceProcess(const DragSourceProcess &) = delete;
    DragSourceProcess &operator=(const DragSourceProcess &) = delete;

    bool isReady() const { return m_ready; }

    // Presses on the source's window and carries the drag through `steps`, pausing at
    // each as a hand does, so that the drag protocol sees the way.
    void dragThrough(std::initializer_list<QPoint> steps, int pauseMs = 120)
    {
        moveTo(m_at + QPoint(50, 50));
        xdotool({ QStringLiteral("mousedown"), QStringLiteral("1") });
        QTest::qWait(pauseMs);
        moveThrough(steps, pauseMs);
    }

    static void moveThrough(std::initializer_list<QPoint> steps, int pauseMs = 120)
    {
        for (const QPoint &step : steps) {
            moveTo(step);
            QTest::qWait(pauseMs);
        }
    }

    static void moveTo(const QPoint &point)
    {
        xdotool({ QStringLiteral("mousemove"), QString::number(point.x()), QString::number(point.y()) });
    }

    // Lets go of the mouse; how the source saw its drag end: "copy" or "ignored". The
    // event loop runs meanwhile, so a window of this process can take the drop.
    QByteArray release()
    {
        xdotool({ QStringLiteral("mouseup"), QStringLiteral("1") });
        if (!QTest::qWaitFor([this] { return m_process.canReadLine(); }, 15000))
            return "<the drag did not end>";
        return m_process.readLine().trimmed();
    }

private:
    QProcess m_process;
    QPoint m_at;
    bool m_ready = false;
};

// Another application (the Qt source) drags `text` onto the sleeping left surface of a
// Ledgewise started with still classic preferences and lets go inside it; how the
// source saw its drag end ("copy" once the drop was taken), or what went wrong. The
// surface reads the text from the source after the release, so the source lives until
// it has said so.
inline QByteArray dragTextOntoLeftSurface(const QString &text)
{
    DragSourceProcess source(DragSourceProcess::Toolkit::qt, QPoint(600, 500), text);
    if (!source.isReady())
        return "<the drag source did not start>";
    // A press before its window is mapped starts no drag.
    if (!QTest::qWaitFor(
            [] {
                return !xdotool({ QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("drag source") })
                            .isEmpty();
            },
            10000))
        return "<the drag source has no window>";
    source.dragThrough({ QPoint(600, 400), QPoint(300, 100), QPoint(122, 15), QPoint(123, 16), QPoint(140, 80) }, 150);
    return source.release();
}

} // namespace ledgewise::testing
