// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What a surface shows of the drop actions on a real window, on Xvfb: Open refusing a
// kind of link says so and keeps the drop; a running save shows its progress, and its
// Cancel button, pressed with the mouse, leaves nothing in the folder.
#include "dragdrop/drop_actions.h"
#include "dragdrop/drop_saves.h"
#include "tests/support/quick_item_search.h"
#include "tests/surfaces/surface_test_support.h"

#include <QAccessible>
#include <QFile>
#include <QMimeData>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

std::shared_ptr<const DropPayload> droppedLinks(const QByteArray &uriList)
{
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), uriList);
    const auto payload = DropPayload::from(data);
    return payload ? std::make_shared<const DropPayload>(*payload) : nullptr;
}

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

// Lets the window draw what its items now hold before the screen is photographed.
void waitForNextFrame(QQuickWindow *window)
{
    QSignalSpy swapped(window, &QQuickWindow::frameSwapped);
    window->update();
    swapped.wait(2000);
}

QPoint centreOnScreen(QQuickItem *item)
{
    return item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

} // namespace

class TestDropSurfaceX11 : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        pointerTo(QPoint(756, 700));
        m_fixture = std::make_unique<SurfaceFixture>();
        // Classic corners: the top of an open pill, where a running save shows, is
        // rounded away.
        m_fixture->context->store.update([](Preferences &p) { p.style = NotchStyle::classic; });
        m_fixture->controller->rebuild(false);
    }

    void cleanup()
    {
        // The surfaces first: they show the saves model until they go.
        m_fixture.reset();
        m_saves.reset();
    }

    void openRefusesAnUnknownSchemeAndSaysSo()
    {
        NotchWindowController *surface = leftSurface();
        for (const QByteArray &refused :
            { QByteArray("ftp://example.org/file.iso\r\n"), QByteArray("foo-handler:run\r\n") }) {
            const auto payload = droppedLinks(refused);
            QVERIFY(payload);
            surface->dragDidDrop(payload);
            QTRY_COMPARE(xGeometry(left).size(), QSize(268, 340));
            QCOMPARE(surface->dropNotice(), QString());
            QQuickItem *notice = findItem(surface->window()->rootObject(), QStringLiteral("dropNotice"));
            QVERIFY(notice);
            QVERIFY(!notice->isVisible());

            surface->performDropAction(QStringLiteral("open"));
            QCOMPARE(surface->dropNotice(), QStringLiteral("Can't open this kind of link."));
            QTRY_VERIFY(notice->isVisible());
            QCOMPARE(notice->property("text").toString(), QStringLiteral("Can't open this kind of link."));
            // The drop stays, so another action can be chosen; nothing reached the desktop.
            QVERIFY(surface->surface()->hasDropPayload());
            QCOMPARE(m_fixture->context->performed, QStringList());
        }
        waitForNextFrame(surface->window());
        screenshot(QStringLiteral("drop-open-refused"));

        // A new drop starts without the notice, and a web link opens.
        surface->dragDidDrop(droppedLinks("https://example.org/page\r\n"));
        QCOMPARE(surface->dropNotice(), QString());
        surface->performDropAction(QStringLiteral("open"));
        QCOMPARE(m_fixture->context->performed, QStringList({ "open" }));
        QVERIFY(!surface->surface()->hasDropPayload());
    }

    void runningSaveShowsProgressAndCancelLeavesNothing()
    {
        QTemporaryDir source, downloads;
        // Large enough that the save is still running when the button is pressed.
        const QString big = source.filePath("archive.tar");
        {
            QFile file(big);
            QVERIFY(file.open(QIODevice::WriteOnly));
            QVERIFY(file.resize(qint64(2) << 30));
        }
        m_saves = std::make_unique<DropSaves>([path = downloads.path()] { return path; });
        DropSaves &saves = *m_saves;
        QSignalSpy finished(&saves, &DropSaves::finished);
        m_fixture->context->saves = &saves;
        m_fixture->controller->rebuild(false); // surfaces made anew, with the saves model

        NotchWindowController *surface = leftSurface();
        surface->dragDidDrop(std::make_shared<const DropPayload>(
            DropPayload { DropPayload::Kind::files, { QUrl::fromLocalFile(big) }, {}, std::nullopt, std::nullopt }));
        QTRY_COMPARE(xGeometry(left).size(), QSize(268, 340));
        surface->performDropAction(QStringLiteral("save"));
        QVERIFY(saves.saving());

        QQuickItem *root = surface->window()->rootObject();
        QQuickItem *cancel = nullptr;
        QTRY_VERIFY((cancel = findItem(root, QStringLiteral("cancelSave"))) && cancel->isVisible());
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(cancel);
        QVERIFY(accessible);
        QCOMPARE(accessible->role(), QAccessible::Button);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Cancel saving"));
        QQuickItem *status = findItem(root, QStringLiteral("saveStatus"));
        QVERIFY(status);
        QTRY_VERIFY(saves.fraction() > 0);
        QVERIFY2(status->property("text").toString().startsWith(QStringLiteral("Saving… ")),
            qPrintable(status->property("text").toString()));
        QVERIFY(status->property("text").toString().endsWith(QStringLiteral(" %")));
        waitForNextFrame(surface->window());
        screenshot(QStringLiteral("drop-saving"));

        clickAt(centreOnScreen(cancel));
        QVERIFY(finished.wait(30000));
        QCOMPARE(finished.first().first().value<SaveOutcome>(), SaveOutcome::cancelled);
        QTRY_VERIFY(!findItem(root, QStringLiteral("saveProgress")));
        QCOMPARE(entries(downloads.path()), QStringList());
    }

private:
    NotchWindowController *leftSurface() const { return m_fixture->surface(NotchSide::left); }

    std::unique_ptr<SurfaceFixture> m_fixture;
    std::unique_ptr<DropSaves> m_saves;
};

QTEST_MAIN(TestDropSurfaceX11)
#include "test_drop_surface_x11.moc"
