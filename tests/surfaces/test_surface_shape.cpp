// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/surface_shape.h"

#include <QRegion>
#include <QRegularExpression>
#include <QTest>

#include <limits>

using namespace ledgewise;

// The shape a surface's window is cut to, from the corner radius of the preferences,
// which a stored record may set to any double.
class TestSurfaceShape : public QObject
{
    Q_OBJECT

private slots:
    // Qt warns about and drops a path point it cannot use: none may be dropped here.
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void anyStoredRadiusGivesAShapeInsideTheWindow_data()
    {
        QTest::addColumn<double>("radius");
        QTest::newRow("nan") << std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("inf") << std::numeric_limits<double>::infinity();
        QTest::newRow("-inf") << -std::numeric_limits<double>::infinity();
        QTest::newRow("1e300") << 1e300;
        QTest::newRow("-1e300") << -1e300;
        QTest::newRow("usual") << 14.0;
    }
    void anyStoredRadiusGivesAShapeInsideTheWindow()
    {
        QFETCH(double, radius);
        const QRect window(0, 0, 268, 340);
        const QRegion shape = roundedRegion(window.size(), radius);
        QVERIFY(!shape.isEmpty());
        QVERIFY2(window.contains(shape.boundingRect()), qPrintable(QDebug::toString(shape.boundingRect())));
        // The middle of each edge is always part of the surface.
        QVERIFY(shape.contains(QPoint(134, 1)));
        QVERIFY(shape.contains(QPoint(134, 338)));
    }

    void squareCornersWithoutARadius() { QCOMPARE(roundedRegion(QSize(100, 40), 0), QRegion(0, 0, 100, 40)); }
};

QTEST_GUILESS_MAIN(TestSurfaceShape)
#include "test_surface_shape.moc"
