// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The glance follows its module live, in the real program: another application copies a
// text, or a file lands in Downloads, while the pointer rests on a surface, and the
// glance shows it there and then, as a screen reader (AT-SPI) reads it.
#include "tests/support/atspi.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// True when the glance of the surface of `side` now reads `text`.
bool glanceReads(const QString &side, const QString &text)
{
    return surfaceLines(readTree(), side).contains(QStringLiteral("label|") + text);
}

void pointerOnto(const QString &side)
{
    const QRect surface = surfaceGeometry(side);
    pointerTo(surface.center().x(), surface.center().y());
}

} // namespace

class TestLiveGlance : public QObject
{
    Q_OBJECT

private slots:
    void theGlanceShowsANewCopyAndANewDownloadWhileThePointerRestsOnIt()
    {
        // The clipboard leads the left side, the Downloads the right one.
        Preferences preferences;
        preferences.style = NotchStyle::classic;
        preferences.animateInterface = false;
        preferences.leftModuleIDs = { ModuleID::clipboard };
        preferences.rightModuleIDs = { ModuleID::downloads };
        storePreferences(preferences);
        QProcess app;
        QVERIFY(startLedgewise(app));
        QTRY_VERIFY_WITH_TIMEOUT(
            !surfaceGeometry(QStringLiteral("left")).isEmpty() && !surfaceGeometry(QStringLiteral("right")).isEmpty(),
            15000);

        // A copy made while the surface sleeps shows when the pointer comes.
        QVERIFY(copyElsewhere("copied before the hover"));
        pointerOnto(QStringLiteral("left"));
        QTRY_VERIFY_WITH_TIMEOUT(glanceReads(QStringLiteral("left"), QStringLiteral("copied before the hover")), 30000);

        // The pointer stays: the next copy replaces the snippet in the glance shown.
        QVERIFY(copyElsewhere("copied during the glance"));
        QTRY_VERIFY_WITH_TIMEOUT(
            glanceReads(QStringLiteral("left"), QStringLiteral("copied during the glance")), 30000);

        // On the Downloads surface, an empty folder glances "Downloads"; a file that
        // arrives meanwhile is named at once.
        pointerOnto(QStringLiteral("right"));
        QTRY_VERIFY_WITH_TIMEOUT(glanceReads(QStringLiteral("right"), QStringLiteral("Downloads")), 30000);
        QFile arrived(QDir(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation))
                          .filePath(QStringLiteral("arrived-during-the-glance.pdf")));
        QVERIFY(arrived.open(QIODevice::WriteOnly));
        QVERIFY(arrived.write("%PDF-1.4\n") > 0);
        arrived.close();
        QTRY_VERIFY_WITH_TIMEOUT(
            glanceReads(QStringLiteral("right"), QStringLiteral("arrived-during-the-glance.pdf")), 30000);

        app.terminate();
        QVERIFY(app.waitForFinished(10000));
        QCOMPARE(app.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TestLiveGlance)
#include "test_live_glance.moc"
