// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "surfaces/notch_layout.h"

#include <QTest>

#include <algorithm>
#include <limits>

using namespace ledgewise;

Q_DECLARE_METATYPE(ledgewise::Rect)
Q_DECLARE_METATYPE(ledgewise::NotchStyle)
Q_DECLARE_METATYPE(ledgewise::NotchPresentation)
Q_DECLARE_METATYPE(ledgewise::NotchSide)

namespace {

// A 1512 x 982 laptop panel with a 200 x 32 notch in the middle of its top edge.
DisplaySnapshot notchedDisplay()
{
    DisplaySnapshot d;
    d.frame = { 0, 0, 1512, 982 };
    d.visibleFrame = { 0, 0, 1512, 950 };
    d.auxiliaryTopLeft = { 0, 950, 656, 32 };
    d.auxiliaryTopRight = { 856, 950, 656, 32 };
    d.safeAreaTop = 32;
    d.menuBarHeight = 32;
    return d;
}

// A 1920 x 1080 monitor with a 24-point top panel and no notch.
DisplaySnapshot plainDisplay()
{
    DisplaySnapshot d;
    d.frame = { 0, 0, 1920, 1080 };
    d.visibleFrame = { 0, 0, 1920, 1056 };
    d.menuBarHeight = 24;
    return d;
}

} // namespace

namespace ledgewise {
// Found by QCOMPARE through argument-dependent lookup, for readable failures.
char *toString(const Rect &r)
{
    return QTest::toString(QStringLiteral("Rect(%1, %2, %3 x %4)").arg(r.x).arg(r.y).arg(r.width).arg(r.height));
}
} // namespace ledgewise

class TestNotchLayout : public QObject
{
    Q_OBJECT

private slots:
    void everyStylePresentationAndSide_data()
    {
        QTest::addColumn<QString>("display");
        QTest::addColumn<NotchStyle>("style");
        QTest::addColumn<NotchPresentation>("presentation");
        QTest::addColumn<NotchSide>("side");
        QTest::addColumn<Rect>("expected");
        QTest::addColumn<double>("radius");
        auto row = [](const char *display, NotchStyle style, NotchPresentation presentation, NotchSide side,
                       Rect expected, double radius) {
            const QByteArray name = QByteArray(display) + ' ' + rawValue(style).toLatin1() + ' '
                + rawValue(presentation).toLatin1() + ' ' + rawValue(side).toLatin1();
            QTest::newRow(name.constData())
                << QString::fromLatin1(display) << style << presentation << side << expected << radius;
        };
        row("notched", NotchStyle::classic, NotchPresentation::sleeping, NotchSide::left, { 564, 952, 84, 30 }, 14);
        row("notched", NotchStyle::classic, NotchPresentation::sleeping, NotchSide::right, { 864, 952, 84, 30 }, 14);
        row("notched", NotchStyle::classic, NotchPresentation::glance, NotchSide::left, { 478, 950, 170, 32 }, 14);
        row("notched", NotchStyle::classic, NotchPresentation::glance, NotchSide::right, { 864, 950, 170, 32 }, 14);
        row("notched", NotchStyle::classic, NotchPresentation::expanded, NotchSide::left, { 380, 642, 268, 340 }, 14);
        row("notched", NotchStyle::classic, NotchPresentation::expanded, NotchSide::right, { 864, 642, 268, 340 }, 14);
        row("notched", NotchStyle::classic, NotchPresentation::active, NotchSide::left, { 516, 950, 132, 32 }, 14);
        row("notched", NotchStyle::classic, NotchPresentation::active, NotchSide::right, { 864, 950, 132, 32 }, 14);
        row("notched", NotchStyle::pill, NotchPresentation::sleeping, NotchSide::left, { 572, 954, 76, 28 }, 14);
        row("notched", NotchStyle::pill, NotchPresentation::sleeping, NotchSide::right, { 864, 954, 76, 28 }, 14);
        row("notched", NotchStyle::pill, NotchPresentation::glance, NotchSide::left, { 486, 952, 162, 30 }, 15);
        row("notched", NotchStyle::pill, NotchPresentation::glance, NotchSide::right, { 864, 952, 162, 30 }, 15);
        row("notched", NotchStyle::pill, NotchPresentation::expanded, NotchSide::left, { 380, 642, 268, 340 }, 24);
        row("notched", NotchStyle::pill, NotchPresentation::expanded, NotchSide::right, { 864, 642, 268, 340 }, 24);
        row("notched", NotchStyle::pill, NotchPresentation::active, NotchSide::left, { 524, 952, 124, 30 }, 15);
        row("notched", NotchStyle::pill, NotchPresentation::active, NotchSide::right, { 864, 952, 124, 30 }, 15);
        row("notched", NotchStyle::minimal, NotchPresentation::sleeping, NotchSide::left, { 584, 960, 64, 22 }, 10);
        row("notched", NotchStyle::minimal, NotchPresentation::sleeping, NotchSide::right, { 864, 960, 64, 22 }, 10);
        row("notched", NotchStyle::minimal, NotchPresentation::glance, NotchSide::left, { 498, 958, 150, 24 }, 10);
        row("notched", NotchStyle::minimal, NotchPresentation::glance, NotchSide::right, { 864, 958, 150, 24 }, 10);
        row("notched", NotchStyle::minimal, NotchPresentation::expanded, NotchSide::left, { 380, 642, 268, 340 }, 10);
        row("notched", NotchStyle::minimal, NotchPresentation::expanded, NotchSide::right, { 864, 642, 268, 340 }, 10);
        row("notched", NotchStyle::minimal, NotchPresentation::active, NotchSide::left, { 528, 958, 120, 24 }, 10);
        row("notched", NotchStyle::minimal, NotchPresentation::active, NotchSide::right, { 864, 958, 120, 24 }, 10);
        row("plain", NotchStyle::classic, NotchPresentation::sleeping, NotchSide::left, { 80, 1050, 84, 30 }, 14);
        row("plain", NotchStyle::classic, NotchPresentation::sleeping, NotchSide::right, { 1756, 1050, 84, 30 }, 14);
        row("plain", NotchStyle::classic, NotchPresentation::glance, NotchSide::left, { 80, 1048, 170, 32 }, 14);
        row("plain", NotchStyle::classic, NotchPresentation::glance, NotchSide::right, { 1670, 1048, 170, 32 }, 14);
        row("plain", NotchStyle::classic, NotchPresentation::expanded, NotchSide::left, { 80, 740, 268, 340 }, 14);
        row("plain", NotchStyle::classic, NotchPresentation::expanded, NotchSide::right, { 1572, 740, 268, 340 }, 14);
        row("plain", NotchStyle::classic, NotchPresentation::active, NotchSide::left, { 80, 1048, 132, 32 }, 14);
        row("plain", NotchStyle::classic, NotchPresentation::active, NotchSide::right, { 1708, 1048, 132, 32 }, 14);
        row("plain", NotchStyle::pill, NotchPresentation::sleeping, NotchSide::left, { 80, 1052, 76, 28 }, 14);
        row("plain", NotchStyle::pill, NotchPresentation::sleeping, NotchSide::right, { 1764, 1052, 76, 28 }, 14);
        row("plain", NotchStyle::pill, NotchPresentation::glance, NotchSide::left, { 80, 1050, 162, 30 }, 15);
        row("plain", NotchStyle::pill, NotchPresentation::glance, NotchSide::right, { 1678, 1050, 162, 30 }, 15);
        row("plain", NotchStyle::pill, NotchPresentation::expanded, NotchSide::left, { 80, 740, 268, 340 }, 24);
        row("plain", NotchStyle::pill, NotchPresentation::expanded, NotchSide::right, { 1572, 740, 268, 340 }, 24);
        row("plain", NotchStyle::pill, NotchPresentation::active, NotchSide::left, { 80, 1050, 124, 30 }, 15);
        row("plain", NotchStyle::pill, NotchPresentation::active, NotchSide::right, { 1716, 1050, 124, 30 }, 15);
        row("plain", NotchStyle::minimal, NotchPresentation::sleeping, NotchSide::left, { 80, 1058, 64, 22 }, 10);
        row("plain", NotchStyle::minimal, NotchPresentation::sleeping, NotchSide::right, { 1776, 1058, 64, 22 }, 10);
        row("plain", NotchStyle::minimal, NotchPresentation::glance, NotchSide::left, { 80, 1056, 150, 24 }, 10);
        row("plain", NotchStyle::minimal, NotchPresentation::glance, NotchSide::right, { 1690, 1056, 150, 24 }, 10);
        row("plain", NotchStyle::minimal, NotchPresentation::expanded, NotchSide::left, { 80, 740, 268, 340 }, 10);
        row("plain", NotchStyle::minimal, NotchPresentation::expanded, NotchSide::right, { 1572, 740, 268, 340 }, 10);
        row("plain", NotchStyle::minimal, NotchPresentation::active, NotchSide::left, { 80, 1056, 120, 24 }, 10);
        row("plain", NotchStyle::minimal, NotchPresentation::active, NotchSide::right, { 1720, 1056, 120, 24 }, 10);
    }
    void everyStylePresentationAndSide()
    {
        QFETCH(QString, display);
        QFETCH(NotchStyle, style);
        QFETCH(NotchPresentation, presentation);
        QFETCH(NotchSide, side);
        QFETCH(Rect, expected);
        QFETCH(double, radius);
        Preferences preferences;
        preferences.style = style;
        const DisplaySnapshot snapshot = display == QLatin1String("notched") ? notchedDisplay() : plainDisplay();
        const Rect frame = NotchLayout::frame(side, presentation, preferences, snapshot);
        QCOMPARE(frame, expected);
        QCOMPARE(NotchLayout::cornerRadius(style, frame.height, preferences), radius);
    }

    void sizesOfEachPresentation()
    {
        Preferences p;
        const struct {
            NotchStyle style;
            Size sleeping, glance, active;
        } table[] = {
            { NotchStyle::classic, { 84, 30 }, { 170, 32 }, { 132, 32 } },
            { NotchStyle::pill, { 76, 28 }, { 162, 30 }, { 124, 30 } },
            { NotchStyle::minimal, { 64, 22 }, { 150, 24 }, { 120, 24 } },
        };
        for (const auto &row : table) {
            p.style = row.style;
            QCOMPARE(NotchLayout::size(NotchPresentation::sleeping, p), row.sleeping);
            QCOMPARE(NotchLayout::size(NotchPresentation::glance, p), row.glance);
            QCOMPARE(NotchLayout::size(NotchPresentation::active, p), row.active);
            QCOMPARE(NotchLayout::size(NotchPresentation::expanded, p), (Size { 268, 340 }));
        }
        p.width = 401;
        p.height = 77;
        QCOMPARE(NotchLayout::size(NotchPresentation::expanded, p), (Size { 401, 77 }));
    }

    void displayWithoutNotchUsesTheEdgeOffset()
    {
        Preferences p;
        p.offsetFromEdge = 120;
        const DisplaySnapshot d = plainDisplay();
        QVERIFY(!d.isNotched());
        const Rect left = NotchLayout::frame(NotchSide::left, NotchPresentation::sleeping, p, d);
        const Rect right = NotchLayout::frame(NotchSide::right, NotchPresentation::sleeping, p, d);
        QCOMPARE(left.minX(), 120.0);
        QCOMPARE(right.maxX(), 1920.0 - 120.0);
        QCOMPARE(left.maxY(), 1080.0);
        QCOMPARE(right.maxY(), 1080.0);
    }

    void notchedDisplayUsesTheNotchOffset()
    {
        Preferences p;
        p.offsetFromNotch = 20;
        const DisplaySnapshot d = notchedDisplay();
        QVERIFY(d.isNotched());
        for (NotchPresentation presentation : allNotchPresentations) {
            QCOMPARE(NotchLayout::frame(NotchSide::left, presentation, p, d).maxX(), 656.0 - 20.0);
            QCOMPARE(NotchLayout::frame(NotchSide::right, presentation, p, d).minX(), 856.0 + 20.0);
            QCOMPARE(NotchLayout::frame(NotchSide::right, presentation, p, d).maxY(), 982.0);
        }
    }

    void safeAreaOnePointDeeperThanThePanelIsNotANotch()
    {
        DisplaySnapshot d = plainDisplay();
        d.safeAreaTop = d.menuBarHeight + 1;
        QVERIFY(!d.isNotched());
        d.safeAreaTop = d.menuBarHeight + 1.5;
        QVERIFY(d.isNotched());
        // Notched, but with no strip reported on either side: both fall back to the edges.
        Preferences p;
        QCOMPARE(NotchLayout::frame(NotchSide::left, NotchPresentation::sleeping, p, d).minX(), 80.0);
        QCOMPARE(NotchLayout::frame(NotchSide::right, NotchPresentation::sleeping, p, d).maxX(), 1840.0);
    }

    void stripReportedOnOneSideOnly()
    {
        DisplaySnapshot d = notchedDisplay();
        d.auxiliaryTopRight = {};
        Preferences p;
        QCOMPARE(NotchLayout::frame(NotchSide::left, NotchPresentation::sleeping, p, d).maxX(), 648.0);
        QCOMPARE(NotchLayout::frame(NotchSide::right, NotchPresentation::sleeping, p, d).maxX(), 1512.0 - 80.0);
    }

    void expandedWiderThanTheDisplayIsCutAndStartsAtItsLeftEdge()
    {
        Preferences p;
        p.width = 5000;
        p.height = 2000;
        for (NotchSide side : allNotchSides) {
            const Rect frame = NotchLayout::frame(side, NotchPresentation::expanded, p, plainDisplay());
            QCOMPARE(frame, (Rect { 0, 0, 1920, 1080 }));
        }
    }

    void offsetPastTheEdgeIsPushedBackInside()
    {
        Preferences p;
        p.offsetFromEdge = -500;
        QCOMPARE(NotchLayout::frame(NotchSide::left, NotchPresentation::glance, p, plainDisplay()),
            (Rect { 0, 1050, 162, 30 }));
        QCOMPARE(NotchLayout::frame(NotchSide::right, NotchPresentation::glance, p, plainDisplay()),
            (Rect { 1920 - 162, 1050, 162, 30 }));
        p.offsetFromNotch = 2000;
        QCOMPARE(NotchLayout::frame(NotchSide::right, NotchPresentation::sleeping, p, notchedDisplay()),
            (Rect { 1512 - 76, 954, 76, 28 }));
        QCOMPARE(NotchLayout::frame(NotchSide::left, NotchPresentation::sleeping, p, notchedDisplay()),
            (Rect { 0, 954, 76, 28 }));
    }

    void displayAwayFromTheOrigin()
    {
        DisplaySnapshot d = plainDisplay();
        d.frame = { 1920, -200, 1280, 800 };
        Preferences p;
        QCOMPARE(NotchLayout::frame(NotchSide::left, NotchPresentation::sleeping, p, d), (Rect { 2000, 572, 76, 28 }));
        QCOMPARE(NotchLayout::frame(NotchSide::right, NotchPresentation::sleeping, p, d),
            (Rect { 1920 + 1280 - 80 - 76, 572, 76, 28 }));
    }

    void clampStepsRunInOrder()
    {
        const Rect bounds { 0, 0, 100, 50 };
        QCOMPARE(NotchLayout::clamp({ -10, 0, 300, 10 }, bounds), (Rect { 0, 0, 100, 10 }));
        QCOMPARE(NotchLayout::clamp({ 90, 0, 20, 10 }, bounds), (Rect { 80, 0, 20, 10 }));
        QCOMPARE(NotchLayout::clamp({ 10, -5, 20, 10 }, bounds), (Rect { 10, 0, 20, 10 }));
        QCOMPARE(NotchLayout::clamp({ 10, 45, 20, 10 }, bounds), (Rect { 10, 40, 20, 10 }));
        QCOMPARE(NotchLayout::clamp({ 10, 10, 20, 10 }, bounds), (Rect { 10, 10, 20, 10 }));
    }

    void cornerRadiusRules()
    {
        Preferences p;
        p.cornerRadius = 3;
        QCOMPARE(NotchLayout::cornerRadius(NotchStyle::minimal, 24, p), 10.0);
        QCOMPARE(NotchLayout::cornerRadius(NotchStyle::minimal, 16, p), 8.0);
        QCOMPARE(NotchLayout::cornerRadius(NotchStyle::pill, 30, p), 15.0);
        // An open pill is rounded like the roundest corner the settings offer, not
        // into an upright capsule that would cut its titles and buttons off.
        QCOMPARE(NotchLayout::cornerRadius(NotchStyle::pill, 340, p), 24.0);
        QCOMPARE(NotchLayout::cornerRadius(NotchStyle::pill, 48, p), 24.0);
        QCOMPARE(NotchLayout::cornerRadius(NotchStyle::pill, 46, p), 23.0);
        for (double height : { 0.0, 22.0, 340.0, 1000.0 })
            QCOMPARE(NotchLayout::cornerRadius(NotchStyle::classic, height, p), 3.0);
        p.cornerRadius = 60; // beyond the settings' slider, as a hand-edited file may hold
        QCOMPARE(NotchLayout::cornerRadius(NotchStyle::classic, 340, p), 24.0);
    }

    // The cap is for open surfaces: every collapsed one keeps the radius its style
    // gives it, in every style, even with the roundest corner a file can store.
    void collapsedRadiiAreUntouchedByTheCap()
    {
        for (NotchStyle style : allNotchStyles) {
            for (double stored : { 8.0, 14.0, 24.0, 60.0 }) {
                Preferences p;
                p.style = style;
                p.cornerRadius = stored;
                for (NotchPresentation presentation :
                    { NotchPresentation::sleeping, NotchPresentation::glance, NotchPresentation::active }) {
                    const Size size = NotchLayout::size(presentation, p);
                    const double styleRule = style == NotchStyle::classic ? stored
                        : style == NotchStyle::pill                       ? size.height / 2
                                                                          : std::min(size.height / 2, 10.0);
                    QCOMPARE(NotchLayout::outlineRadius(style, size, p),
                        std::min({ styleRule, size.width / 2, size.height / 2 }));
                }
            }
        }
    }

    void outlineRadiusFitsTheSurface()
    {
        Preferences p;
        p.style = NotchStyle::pill;
        QCOMPARE(NotchLayout::outlineRadius(NotchStyle::pill, { 268, 340 }, p), 24.0);
        QCOMPARE(NotchLayout::outlineRadius(NotchStyle::pill, { 76, 28 }, p), 14.0);
        QCOMPARE(NotchLayout::outlineRadius(NotchStyle::minimal, { 268, 340 }, p), 10.0);
        // Never more than half the shorter side: a squat open surface is a capsule.
        QCOMPARE(NotchLayout::outlineRadius(NotchStyle::pill, { 30, 340 }, p), 15.0);
        p.cornerRadius = 20;
        QCOMPARE(NotchLayout::outlineRadius(NotchStyle::classic, { 84, 30 }, p), 15.0);
        QCOMPARE(NotchLayout::outlineRadius(NotchStyle::classic, { 268, 340 }, p), 20.0);
        // A stored radius that is no positive number gives square corners.
        for (double stored :
            { std::numeric_limits<double>::quiet_NaN(), -3.0, 0.0, -std::numeric_limits<double>::infinity() }) {
            p.cornerRadius = stored;
            QCOMPARE(NotchLayout::outlineRadius(NotchStyle::classic, { 268, 340 }, p), 0.0);
        }
        p.cornerRadius = std::numeric_limits<double>::infinity();
        QCOMPARE(NotchLayout::outlineRadius(NotchStyle::classic, { 268, 340 }, p), 24.0);
        // Nor does a surface without a size have corners.
        QCOMPARE(NotchLayout::outlineRadius(NotchStyle::pill, { 0, 0 }, p), 0.0);
    }

    void negativeSizesAreNotCorrected()
    {
        Preferences p;
        p.width = -10;
        p.height = 0;
        const Rect frame = NotchLayout::frame(NotchSide::left, NotchPresentation::expanded, p, plainDisplay());
        QCOMPARE(frame.width, -10.0);
        QCOMPARE(frame.height, 0.0);
    }

    void storedNumbersOfAnySizeGiveAWholePixelWindow_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<double>("value");
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const double inf = std::numeric_limits<double>::infinity();
        for (const char *field : { "width", "height", "offsetFromEdge", "offsetFromNotch" }) {
            for (double value : { -1e300, 1e300, nan, inf, -inf, -2147483649.0, 2147483648.0 })
                QTest::addRow("%s %g", field, value) << QString::fromLatin1(field) << value;
        }
    }
    void storedNumbersOfAnySizeGiveAWholePixelWindow()
    {
        QFETCH(QString, field);
        QFETCH(double, value);
        Preferences p;
        (field == u"width"                   ? p.width
                : field == u"height"         ? p.height
                : field == u"offsetFromEdge" ? p.offsetFromEdge
                                             : p.offsetFromNotch)
            = value;
        constexpr int reach = 1 << 24;
        for (const auto &display : { plainDisplay(), notchedDisplay() }) {
            for (const NotchSide side : { NotchSide::left, NotchSide::right }) {
                const Rect frame = NotchLayout::frame(side, NotchPresentation::expanded, p, display);
                const QRect window = toWindowRect(frame, display.frame.height);
                QVERIFY2(window.width() >= 0 && window.height() >= 0, qPrintable(field));
                QVERIFY(std::abs(window.x()) <= reach && std::abs(window.y()) <= reach);
                QVERIFY(window.width() <= reach && window.height() <= reach);
                if (value == 1e300 && field == u"width")
                    QCOMPARE(window, QRect(0, 0, int(display.frame.width), 340)); // the whole display's width
            }
        }
    }

    void windowRectOfAnOrdinaryFrameIsItsAlignedRect()
    {
        QCOMPARE(toWindowRect(Rect { 100.5, 900, 76, 28 }, 982), QRect(100, 54, 77, 28));
        QCOMPARE(toWindowRect(Rect { -10, 0, -5, 0 }, 982), QRect(-10, 982, 0, 0));
    }

    void snapshotsDifferingOnlyInPanelThicknessAreUnequal()
    {
        DisplaySnapshot a = plainDisplay();
        DisplaySnapshot b = a;
        QVERIFY(a == b);
        b.menuBarHeight = 25;
        QVERIFY(!(a == b));
        b = a;
        b.visibleFrame.height += 0.5;
        QVERIFY(!(a == b));
    }

    void emptyRectangles()
    {
        QVERIFY(Rect {}.isEmpty());
        QVERIFY((Rect { 5, 5, 0, 10 }).isEmpty());
        QVERIFY((Rect { 5, 5, 10, 0 }).isEmpty());
        QVERIFY(!(Rect { 5, 5, 10, 10 }).isEmpty());
    }

    void topLeftConversionRoundTrips()
    {
        const Rect r { 100, 900, 76, 28 };
        const QRectF qt = toTopLeft(r, 982);
        QCOMPARE(qt, QRectF(100, 54, 76, 28));
        QCOMPARE(fromTopLeft(qt, 982), r);
    }

    void sideAndPresentationRawValues()
    {
        QCOMPARE(rawValue(NotchSide::left), QStringLiteral("left"));
        QCOMPARE(rawValue(NotchSide::right), QStringLiteral("right"));
        QCOMPARE(notchSideFromRaw(QStringLiteral("Left")), std::nullopt);
        QStringList raws;
        for (NotchPresentation presentation : allNotchPresentations) {
            raws << rawValue(presentation);
            QCOMPARE(notchPresentationFromRaw(rawValue(presentation)), presentation);
        }
        QCOMPARE(raws, QStringList({ "sleeping", "glance", "expanded", "active" }));
        QCOMPARE(notchPresentationFromRaw(QStringLiteral("hidden")), std::nullopt);
    }
};

QTEST_GUILESS_MAIN(TestNotchLayout)
#include "test_notch_layout.moc"
