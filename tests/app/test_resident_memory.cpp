// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What Ledgewise keeps resident while it only shows its surfaces: its symbols are drawn
// without Qt Quick's image loading, so no image format plugin (and none of the TIFF,
// WebP, MNG... libraries behind them) is loaded until an image is really shown, and the
// SVG one only once a symbol is; nor are the widget or SVG libraries loaded at start.
#include "app/qml_modules.h"
#include "tests/support/ledgewise_process.h"
#include "tests/support/x11_tools.h"

#include <QFile>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// Pixels in `area` of the window's last frame that are not the black it is filled with.
int drawnPixels(QQuickWindow &window, const QRect &area)
{
    const QImage frame = window.grabWindow();
    int drawn = 0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            drawn += qGray(frame.pixel(x, y)) > 40 ? 1 : 0;
    return drawn;
}

// From the leftmost to the rightmost column of the frame with anything drawn.
int drawnWidth(QQuickWindow &window)
{
    const QImage frame = window.grabWindow();
    int first = frame.width();
    int last = -1;
    for (int y = 0; y < frame.height(); ++y)
        for (int x = 0; x < frame.width(); ++x) {
            if (qGray(frame.pixel(x, y)) > 40) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
        }
    return last >= first ? last - first + 1 : 0;
}

// The files of `pid`'s mappings whose path contains `part`, by their names.
QStringList mappedFiles(qint64 pid, const QByteArray &part)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(pid));
    if (!maps.open(QIODevice::ReadOnly))
        return { QStringLiteral("(maps unreadable)") };
    QStringList files;
    for (const QByteArray &line : maps.readAll().split('\n')) {
        if (line.contains(part))
            files.append(QString::fromUtf8(line.mid(line.lastIndexOf('/') + 1)));
    }
    files.removeDuplicates();
    return files;
}

QStringList mappedImagePlugins(qint64 pid)
{
    return mappedFiles(pid, "/imageformats/");
}

} // namespace

class TestResidentMemory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QQuickWindow::setGraphicsApi(QSGRendererInterface::Software); }

    void symbolDrawsItsDrawingAndNothingForAnUnknownName()
    {
        QQmlEngine engine;
        addLedgewiseQmlModules(engine);
        QQmlComponent component(&engine);
        component.setData("import QtQuick\nimport Ledgewise.Surfaces\n"
                          "Rectangle { width: 48; height: 48; color: 'black'\n"
                          "  Symbol { objectName: 'symbol'; x: 12; y: 12; name: 'timer'; size: 24 } }",
            QUrl::fromLocalFile(QStringLiteral("/symbol_test.qml")));
        std::unique_ptr<QQuickItem> root(qobject_cast<QQuickItem *>(component.create()));
        QVERIFY2(root, qPrintable(component.errorString()));
        QQuickWindow window;
        window.resize(48, 48);
        root->setParentItem(window.contentItem());
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window, 10000));

        auto *symbol = root->findChild<QQuickItem *>(QStringLiteral("symbol"));
        QVERIFY(symbol);
        QCOMPARE(symbol->width(), 24.0);
        QCOMPARE(symbol->height(), 24.0);
        const QRect inside(12, 12, 24, 24);
        QTRY_VERIFY_WITH_TIMEOUT(drawnPixels(window, inside) > 20, 10000);
        // Nothing is drawn outside the symbol's own square.
        QCOMPARE(drawnPixels(window, QRect(0, 0, 48, 10)), 0);

        symbol->setProperty("name", QStringLiteral("no.such.symbol"));
        QTRY_COMPARE_WITH_TIMEOUT(drawnPixels(window, inside), 0, 10000);
        symbol->setProperty("name", QStringLiteral("xmark"));
        QTRY_VERIFY_WITH_TIMEOUT(drawnPixels(window, inside) > 20, 10000);
        // The cross spans 12 of the symbol's 24 points (14 with its round ends); grown to
        // 36, it is half as wide again.
        const int before = drawnWidth(window);
        QVERIFY2(before >= 12 && before <= 16, qPrintable(QString::number(before)));
        symbol->setProperty("size", 36);
        symbol->setPosition(QPointF(6, 6));
        QTRY_VERIFY_WITH_TIMEOUT(drawnWidth(window) >= before * 3 / 2 - 1, 10000);
    }

    void sleepingSurfacesLoadNoImagePluginNorWidgetsAndAGlanceOnlyTheSvgOne()
    {
        QProcess app;
        app.setProcessChannelMode(QProcess::ForwardedChannels);
        QVERIFY(startLedgewise(app));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("left")).isEmpty(), 30000);
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceWindow(QStringLiteral("right")).isEmpty(), 30000);
        // Both surfaces sleep, showing their bars; give a late load time to show.
        QTest::qWait(1000);
        QCOMPARE(mappedImagePlugins(app.processId()), QStringList());
        QCOMPARE(mappedFiles(app.processId(), "libQt6Widgets"), QStringList());
        QCOMPARE(mappedFiles(app.processId(), "libQt6Svg"), QStringList());

        // Hovered, the left surface shows its module's symbol: drawn from its SVG.
        const QString left = surfaceWindow(QStringLiteral("left"));
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("--window"), left, QStringLiteral("20"),
            QStringLiteral("10") });
        QTRY_COMPARE_WITH_TIMEOUT(
            mappedImagePlugins(app.processId()), QStringList(QStringLiteral("libqsvg.so")), 10000);
        QCOMPARE(mappedFiles(app.processId(), "libQt6Widgets"), QStringList());

        app.terminate();
        QVERIFY(app.waitForFinished(10000));
    }
};

QTEST_MAIN(TestResidentMemory)
#include "test_resident_memory.moc"
