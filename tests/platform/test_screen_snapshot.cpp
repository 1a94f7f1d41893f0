// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/display/screen_snapshot.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>

using namespace ledgewise;

namespace ledgewise {
char *toString(const Rect &r)
{
    return QTest::toString(QStringLiteral("Rect(%1, %2, %3 x %4)").arg(r.x).arg(r.y).arg(r.width).arg(r.height));
}
} // namespace ledgewise

namespace {

void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

} // namespace

class TestScreenSnapshot : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv("LEDGEWISE_NOTCH"); }

    void realScreenWithoutNotch()
    {
        const QScreen *screen = QGuiApplication::primaryScreen();
        QVERIFY(screen);
        const DisplaySnapshot snapshot = snapshotOf(*screen);
        QCOMPARE(snapshot.frame, (Rect { 0, 0, 1512, 982 }));
        QCOMPARE(snapshot.visibleFrame, (Rect { 0, 0, 1512, 982 }));
        QVERIFY(snapshot.auxiliaryTopLeft.isEmpty());
        QVERIFY(snapshot.auxiliaryTopRight.isEmpty());
        QCOMPARE(snapshot.safeAreaTop, 0.0);
        QCOMPARE(snapshot.menuBarHeight, 0.0);
        QVERIFY(!snapshot.isNotched());
    }

    void overridePutsANotchInTheMiddleOfThePrimaryScreen()
    {
        qputenv("LEDGEWISE_NOTCH", "200x32");
        const DisplaySnapshot snapshot = snapshotOf(*QGuiApplication::primaryScreen());
        QCOMPARE(snapshot.auxiliaryTopLeft, (Rect { 0, 950, 656, 32 }));
        QCOMPARE(snapshot.auxiliaryTopRight, (Rect { 856, 950, 656, 32 }));
        QCOMPARE(snapshot.safeAreaTop, 32.0);
        QVERIFY(snapshot.isNotched());
    }

    void malformedOverrideIsIgnored_data()
    {
        QTest::addColumn<QByteArray>("value");
        for (const char *value : { "", "200", "200x", "x32", "0x32", "200x0", "-5x3", "wide", "200*32", "2e2x32" })
            QTest::newRow(value) << QByteArray(value);
    }
    void malformedOverrideIsIgnored()
    {
        QFETCH(QByteArray, value);
        QCOMPARE(parseNotchOverride(value), std::nullopt);
        qputenv("LEDGEWISE_NOTCH", value);
        QVERIFY(!snapshotOf(*QGuiApplication::primaryScreen()).isNotched());
    }

    void overrideAcceptsFractionsAndUpperCase()
    {
        QCOMPARE(parseNotchOverride("185.5X37"), (NotchSize { 185.5, 37 }));
        QCOMPARE(parseNotchOverride(" 200x32 "), (NotchSize { 200, 32 }));
    }

    void secondScreenAndTopPanelInLayoutCoordinates()
    {
        // Primary 1512 x 982 with a 24-point top panel; a 1920 x 1080 monitor to its right.
        const ScreenGeometry primary { QRect(0, 0, 1512, 982), QRect(0, 24, 1512, 958) };
        const ScreenGeometry external { QRect(1512, 0, 1920, 1080), QRect(1512, 24, 1920, 1056) };
        const DisplaySnapshot primarySnapshot = makeDisplaySnapshot(primary, primary, std::nullopt);
        QCOMPARE(primarySnapshot.frame, (Rect { 0, 0, 1512, 982 }));
        QCOMPARE(primarySnapshot.visibleFrame, (Rect { 0, 0, 1512, 958 }));
        QCOMPARE(primarySnapshot.menuBarHeight, 24.0);

        const DisplaySnapshot externalSnapshot = makeDisplaySnapshot(external, primary, std::nullopt);
        QCOMPARE(externalSnapshot.frame, (Rect { 1512, -98, 1920, 1080 }));
        QCOMPARE(externalSnapshot.frame.maxY(), 982.0);
        QCOMPARE(externalSnapshot.menuBarHeight, 24.0);
        QVERIFY(!externalSnapshot.isNotched());
    }

    void notchOnAScreenAwayFromTheOrigin()
    {
        const ScreenGeometry primary { QRect(0, 0, 1920, 1080), QRect(0, 0, 1920, 1080) };
        const ScreenGeometry laptop { QRect(1920, 100, 1512, 982), QRect(1920, 100, 1512, 982) };
        const DisplaySnapshot snapshot = makeDisplaySnapshot(laptop, primary, NotchSize { 200, 37 });
        QCOMPARE(snapshot.frame, (Rect { 1920, -2, 1512, 982 }));
        QCOMPARE(snapshot.auxiliaryTopLeft, (Rect { 1920, 943, 656, 37 }));
        QCOMPARE(snapshot.auxiliaryTopRight, (Rect { 2576 + 200, 943, 656, 37 }));
        QCOMPARE(snapshot.safeAreaTop, 37.0);
    }

    void detectsAnAppleLaptopNotchFromTheDeviceTree()
    {
        QTemporaryDir root;
        writeFile(root.filePath("sys/module/appledrm/parameters/show_notch"), "Y\n");
        writeFile(
            root.filePath("proc/device-tree/model"), QByteArray("Apple MacBook Pro (14-inch, M1 Pro, 2021)\0", 43));
        writeFile(root.filePath("proc/device-tree/soc@200000000/dcp@38bc00000/apple,notch-height"), bigEndian(74));
        const auto notch = NotchDetector(root.path()).detectPixels();
        QVERIFY(notch);
        QCOMPARE(notch->height, 74.0);
        QCOMPARE(notch->width, 400.0);
    }

    void olderDriverNameIsReadToo()
    {
        QTemporaryDir root;
        writeFile(root.filePath("sys/module/apple_dcp/parameters/show_notch"), "1\n");
        writeFile(root.filePath("proc/device-tree/model"), "Apple MacBook Air (15-inch, M2, 2023)");
        writeFile(root.filePath("proc/device-tree/dcp/apple,notch-height"), bigEndian(64));
        QCOMPARE(NotchDetector(root.path()).detectPixels(), (NotchSize { 420, 64 }));
    }

    void noNotchWhenTheRowsAreHiddenOrNothingIsKnown()
    {
        QTemporaryDir hidden;
        writeFile(hidden.filePath("sys/module/appledrm/parameters/show_notch"), "N\n");
        writeFile(hidden.filePath("proc/device-tree/dcp/apple,notch-height"), bigEndian(74));
        QCOMPARE(NotchDetector(hidden.path()).detectPixels(), std::nullopt);

        QTemporaryDir noProperty;
        writeFile(noProperty.filePath("sys/module/appledrm/parameters/show_notch"), "Y\n");
        QCOMPARE(NotchDetector(noProperty.path()).detectPixels(), std::nullopt);

        QTemporaryDir truncated;
        writeFile(truncated.filePath("sys/module/appledrm/parameters/show_notch"), "Y\n");
        writeFile(truncated.filePath("proc/device-tree/dcp/apple,notch-height"), QByteArray("\x00\x4a", 2));
        QCOMPARE(NotchDetector(truncated.path()).detectPixels(), std::nullopt);

        QTemporaryDir empty;
        QCOMPARE(NotchDetector(empty.path()).detectPixels(), std::nullopt);
    }

    void virtualScreenIsNotABuiltInPanel() { QVERIFY(!isBuiltInPanel(*QGuiApplication::primaryScreen())); }
};

QTEST_MAIN(TestScreenSnapshot)
#include "test_screen_snapshot.moc"
