// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The surfaces' menu as a user works it on a real X display: it opens at the pointer
// and turns to stay on screen, the arrow keys walk its commands round the ends past the
// separator, Return runs the chosen one, Escape and a press outside close it running
// nothing, a click runs the command under the pointer, and each key it is sent is
// offered first to the global shortcuts.
#include "app/qml_modules.h"
#include "surfaces/surface_menu.h"
#include "tests/support/x11_tools.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSGRendererInterface>
#include <QScreen>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// The window's frame as the X server has it, "x,y WxH".
QString serverGeometry(const QWindow &window)
{
    const QString id = QString::number(window.winId());
    const QString shell = xdotool({ QStringLiteral("getwindowgeometry"), QStringLiteral("--shell"), id });
    QMap<QString, QString> values;
    for (const QString &line : shell.split(QLatin1Char('\n'))) {
        const qsizetype equals = line.indexOf(QLatin1Char('='));
        if (equals > 0)
            values.insert(line.left(equals), line.mid(equals + 1));
    }
    return QStringLiteral("%1,%2 %3x%4")
        .arg(values.value("X"), values.value("Y"), values.value("WIDTH"), values.value("HEIGHT"));
}

void key(const QString &name)
{
    xdotool({ QStringLiteral("key"), name });
}

} // namespace

class TestSurfaceMenu : public QObject
{
    Q_OBJECT

    QQmlEngine *m_engine = nullptr;
    std::unique_ptr<SurfaceMenu> m_menu;
    QStringList m_ran;

    bool openAt(QPoint point)
    {
        m_menu->popup(point);
        // Shown first: the keyboard leaving the menu closed last time may be news yet.
        return QTest::qWaitFor([this] { return m_menu->window() && m_menu->window()->isExposed(); }, 10000)
            && QTest::qWaitFor([this] { return m_menu->window()->isActive(); }, 10000);
    }

    QQuickItem *row(int index) const
    {
        QQuickItem *column = m_menu->window()->contentItem()->childItems().constFirst()->childItems().constFirst();
        return column->childItems().value(index);
    }

    int highlighted() const
    {
        for (int index = 0; index < 4; ++index) {
            if (auto *highlight = row(index)->findChild<QQuickItem *>(QStringLiteral("menuHighlight"));
                highlight && highlight->isVisible())
                return index;
        }
        return -1;
    }

private slots:
    void initTestCase()
    {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
        m_engine = new QQmlEngine(this);
        addLedgewiseQmlModules(*m_engine);
    }

    void init()
    {
        m_ran.clear();
        m_menu = std::make_unique<SurfaceMenu>(*m_engine,
            QList<SurfaceMenu::Entry> {
                { QStringLiteral("Settings…"), [this] { m_ran << QStringLiteral("settings"); } },
                { QStringLiteral("Check for Updates…"), [this] { m_ran << QStringLiteral("updates"); } }, {},
                { QStringLiteral("Quit Ledgewise"), [this] { m_ran << QStringLiteral("quit"); } } });
    }

    void cleanup() { m_menu.reset(); }

    void placementTurnsTheMenuToStayOnScreen()
    {
        const QRect screen(0, 0, 1000, 800);
        const QSize size(180, 100);
        QCOMPARE(SurfaceMenu::placement({ 100, 100 }, size, screen), QPoint(100, 100));
        // Its right edge at the point near the right side, its bottom edge near the bottom.
        QCOMPARE(SurfaceMenu::placement({ 950, 100 }, size, screen), QPoint(770, 100));
        QCOMPARE(SurfaceMenu::placement({ 100, 750 }, size, screen), QPoint(100, 650));
        QCOMPARE(SurfaceMenu::placement({ 999, 799 }, size, screen), QPoint(819, 699));
        // Exactly fitting still opens at the point.
        QCOMPARE(SurfaceMenu::placement({ 820, 700 }, size, screen), QPoint(820, 700));
        // On a second screen, never onto the first.
        QCOMPARE(SurfaceMenu::placement({ 1010, 5 }, size, QRect(1000, 0, 1000, 800)), QPoint(1010, 5));
        QCOMPARE(SurfaceMenu::placement({ 1050, 5 }, QSize(1200, 100), QRect(1000, 0, 1000, 800)), QPoint(1000, 5));
    }

    void opensAtThePointerAndTurnsNearTheScreensEdge()
    {
        QVERIFY(openAt({ 118, 14 }));
        QCOMPARE(serverGeometry(*m_menu->window()),
            QStringLiteral("118,14 %1x%2").arg(m_menu->window()->width()).arg(m_menu->window()->height()));
        QVERIFY(m_menu->window()->width() >= 180);
        QVERIFY(m_menu->isOpen());
        m_menu->close();
        QTRY_VERIFY(!m_menu->isOpen());

        const QRect screen = QGuiApplication::primaryScreen()->geometry();
        QVERIFY(openAt(screen.bottomRight() - QPoint(5, 5)));
        const QWindow &window = *m_menu->window();
        QCOMPARE(serverGeometry(window),
            QStringLiteral("%1,%2 %3x%4")
                .arg(screen.right() - 5 - window.width())
                .arg(screen.bottom() - 5 - window.height())
                .arg(window.width())
                .arg(window.height()));
    }

    void arrowKeysWalkTheCommandsAndReturnRunsTheChosenOne()
    {
        QVERIFY(openAt({ 200, 200 }));
        QCOMPARE(highlighted(), -1);
        key(QStringLiteral("Down"));
        QTRY_COMPARE(highlighted(), 0);
        key(QStringLiteral("Down"));
        QTRY_COMPARE(highlighted(), 1);
        // Past the separator, then round to the first.
        key(QStringLiteral("Down"));
        QTRY_COMPARE(highlighted(), 3);
        key(QStringLiteral("Down"));
        QTRY_COMPARE(highlighted(), 0);
        key(QStringLiteral("Up"));
        QTRY_COMPARE(highlighted(), 3);
        key(QStringLiteral("Up"));
        QTRY_COMPARE(highlighted(), 1);
        key(QStringLiteral("Return"));
        QTRY_COMPARE(m_ran, QStringList(QStringLiteral("updates")));
        QVERIFY(!m_menu->isOpen());

        // Opened again, nothing is chosen: Return alone runs nothing.
        QVERIFY(openAt({ 200, 200 }));
        QCOMPARE(highlighted(), -1);
        key(QStringLiteral("Return"));
        key(QStringLiteral("Escape"));
        QTRY_VERIFY(!m_menu->isOpen());
        QCOMPARE(m_ran, QStringList(QStringLiteral("updates")));
    }

    void aClickRunsTheCommandUnderThePointer()
    {
        QVERIFY(openAt({ 300, 300 }));
        QQuickItem *quit = row(3);
        const QPoint centre = quit->mapToGlobal(QPointF(quit->width() / 2, quit->height() / 2)).toPoint();
        xdotool({ QStringLiteral("mousemove"), QString::number(centre.x()), QString::number(centre.y()) });
        QTRY_COMPARE(highlighted(), 3);
        xdotool({ QStringLiteral("click"), QStringLiteral("1") });
        QTRY_COMPARE(m_ran, QStringList(QStringLiteral("quit")));
        QVERIFY(!m_menu->isOpen());
    }

    void aClickOnTheSeparatorOrOutsideRunsNothing()
    {
        QVERIFY(openAt({ 300, 300 }));
        QQuickItem *separator = row(2);
        const QPoint line = separator->mapToGlobal(QPointF(separator->width() / 2, separator->height() / 2)).toPoint();
        xdotool({ QStringLiteral("mousemove"), QString::number(line.x()), QString::number(line.y()),
            QStringLiteral("click"), QStringLiteral("1") });
        QTest::qWait(200); // a click that must have no effect: nothing to wait for
        QVERIFY(m_menu->isOpen());
        // The menu holds the pointer: a press elsewhere reaches it, and closes it.
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("50"), QStringLiteral("600"), QStringLiteral("click"),
            QStringLiteral("1") });
        QTRY_VERIFY(!m_menu->isOpen());
        QCOMPARE(m_ran, QStringList());
    }

    void eachKeyIsOfferedToTheInterceptorFirst()
    {
        // The global shortcuts take their keys from the menu that holds the keyboard:
        // here Return, so the chosen command does not run.
        QList<QPair<quint32, quint32>> pressed;
        m_menu->setKeyInterceptor([&](const QKeyEvent &key) {
            if (key.type() == QEvent::KeyPress)
                pressed.append({ key.nativeScanCode(), key.nativeModifiers() });
            return key.key() == Qt::Key_Return;
        });
        QVERIFY(openAt({ 200, 200 }));
        xdotool({ QStringLiteral("key"), QStringLiteral("alt+space") });
        // X: Space is key code 65 in the usual keymaps; Alt is Mod1 (bit 3).
        QTRY_VERIFY(std::any_of(
            pressed.begin(), pressed.end(), [](const auto &key) { return key.first == 65 && (key.second & 0x8); }));
        key(QStringLiteral("Down"));
        QTRY_COMPARE(highlighted(), 0);
        key(QStringLiteral("Return"));
        QTRY_VERIFY(std::any_of(pressed.begin(), pressed.end(), [](const auto &key) { return key.first == 36; }));
        key(QStringLiteral("Escape"));
        QTRY_VERIFY(!m_menu->isOpen());
        QCOMPARE(m_ran, QStringList());
    }
};

QTEST_MAIN(TestSurfaceMenu)
#include "test_surface_menu.moc"
