// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Share and Send to Device on a real surface, pressed with the mouse on Xvfb: Share opens
// the user's mail client (a script of ours, the default for mailto:) with the dropped file
// attached or the text as body, and keeps the drop; Send to Device is disabled and says
// why while no phone is paired and reachable, does nothing when pressed, and once a
// KDE Connect service on the session bus offers a phone, sends it the file.
#include "app/app_model.h"
#include "app/preferences_store.h"
#include "platform/dbus/kdeconnect_devices.h"
#include "surfaces/notch_controller.h"
#include "tests/support/fake_kdeconnect.h"
#include "tests/support/quick_item_search.h"
#include "tests/support/test_files.h"
#include "tests/support/x11_tools.h"

#include <QAccessible>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QProcess>
#include <QQuickItem>
#include <QQuickView>
#include <QStandardPaths>
#include <QTest>
#include <QUrlQuery>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

QPoint centreOf(QQuickItem *item)
{
    return item->mapToGlobal(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

void clickOn(QQuickItem *item)
{
    const QPoint centre = centreOf(item);
    xdotool({ QStringLiteral("mousemove"), QString::number(centre.x()), QString::number(centre.y()),
        QStringLiteral("click"), QStringLiteral("1") });
}

std::shared_ptr<const DropPayload> droppedFile(const QString &path)
{
    return std::make_shared<const DropPayload>(
        DropPayload { DropPayload::Kind::files, { QUrl::fromLocalFile(path) }, {}, std::nullopt, std::nullopt });
}

} // namespace

class TestDropShareX11 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        // A mail client of our own as the user's default for mailto: it writes down the
        // address it was handed. xdg-email finds it the way it does on any desktop it has
        // no special case for, whatever desktop the tests were started from.
        for (const char *name : { "XDG_CURRENT_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
                 "GNOME_DESKTOP_SESSION_ID", "MATE_DESKTOP_SESSION_ID", "MAILER", "BROWSER" })
            qunsetenv(name);
        m_home = QDir::homePath();
        const QString applications = QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
                                         .filePath(QStringLiteral("applications"));
        QVERIFY(QDir().mkpath(applications));
        writeFile(QDir(m_home).filePath(QStringLiteral("mail.sh")),
            "#!/bin/sh\nprintf '%s' \"$1\" > \"$HOME/mail.tmp\" && mv \"$HOME/mail.tmp\" \"$HOME/mail.txt\"\n", true);
        writeFile(QDir(applications).filePath(QStringLiteral("test-mail.desktop")),
            "[Desktop Entry]\nType=Application\nName=Test Mail\nExec=" + QDir(m_home).filePath("mail.sh").toUtf8()
                + " %u\nMimeType=x-scheme-handler/mailto;\n");
        QProcess mime;
        mime.start(QStringLiteral("xdg-mime"),
            { QStringLiteral("default"), QStringLiteral("test-mail.desktop"),
                QStringLiteral("x-scheme-handler/mailto") });
        QVERIFY(mime.waitForFinished(10000));
        QCOMPARE(mime.exitCode(), 0);
        m_report = QDir(m_home).filePath(QStringLiteral("report 1.txt"));
        writeFile(m_report, "quarterly figures");
    }

    void init()
    {
        xdotool({ QStringLiteral("mousemove"), QStringLiteral("756"), QStringLiteral("700") });
        m_model = std::make_unique<AppModel>();
        m_model->start();
        // Square corners: every button of the drop lies well inside the window's shape.
        m_model->prefs().setCurrent(Preferences::defaults());
        m_model->prefs().update([](Preferences &p) { p.style = NotchStyle::classic; });
        QFile::remove(mailed());
    }

    void cleanup() { m_model.reset(); }

    void shareMailsTheDroppedFileAttachedAndKeepsTheDrop()
    {
        NotchWindowController *left = dropOnLeft(droppedFile(m_report));
        QVERIFY(left);
        QQuickItem *share = findItem(left->window()->rootObject(), QStringLiteral("dropAction_share"));
        QVERIFY(share);
        clickOn(share);

        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(mailed()), 20000);
        const QUrl mail(QString::fromUtf8(readAll(mailed())));
        QCOMPARE(mail.scheme(), QStringLiteral("mailto"));
        const QUrlQuery query(mail);
        QCOMPARE(query.allQueryItemValues(QStringLiteral("attach"), QUrl::FullyDecoded), QStringList({ m_report }));
        QVERIFY(!query.hasQueryItem(QStringLiteral("body")));
        // Share leaves the drop on the surface.
        QVERIFY(left->surface()->hasDropPayload());
        QCOMPARE(left->surface()->presentation(), NotchPresentation::expanded);
    }

    void shareMailsDroppedTextAsTheBody()
    {
        const QString text = QStringLiteral("Lunch at 12 & bring the <b>notes</b>");
        NotchWindowController *left = dropOnLeft(
            std::make_shared<const DropPayload>(DropPayload { DropPayload::Kind::text, {}, {}, text, std::nullopt }));
        QVERIFY(left);
        clickOn(findItem(left->window()->rootObject(), QStringLiteral("dropAction_share")));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(mailed()), 20000);
        const QUrlQuery query { QUrl(QString::fromUtf8(readAll(mailed()))) };
        QCOMPARE(query.queryItemValue(QStringLiteral("body"), QUrl::FullyDecoded), text);
        QVERIFY(!query.hasQueryItem(QStringLiteral("attach")));
    }

    void shareMailsATextOfManyMegabytesAttachedAsATextFile()
    {
        // Too long for a mail's body (it travels on the mail program's command line):
        // written to a file of its own, off the main thread, and attached.
        QByteArray text(50 * 1024 * 1024, 'x');
        text.replace(0, 11, "Chapter one");
        QMimeData offered;
        offered.setData(QStringLiteral("text/plain"), text);
        NotchWindowController *left = dropOnLeft(std::make_shared<const DropPayload>(*DropPayload::from(offered)));
        QVERIFY(left);
        clickOn(findItem(left->window()->rootObject(), QStringLiteral("dropAction_share")));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(mailed()), 20000);
        const QUrlQuery query { QUrl(QString::fromUtf8(readAll(mailed()))) };
        QVERIFY(!query.hasQueryItem(QStringLiteral("body")));
        const QStringList attached = query.allQueryItemValues(QStringLiteral("attach"), QUrl::FullyDecoded);
        QCOMPARE(attached.size(), 1);
        QCOMPARE(QFileInfo(attached.constFirst()).fileName(), QStringLiteral("Dropped text.txt"));
        QCOMPARE(readAll(attached.constFirst()), text);
        QVERIFY(left->surface()->hasDropPayload());
    }

    void sendToDeviceWithoutAPhoneIsDisabledSaysWhyAndDoesNothing()
    {
        NotchWindowController *left = dropOnLeft(droppedFile(m_report));
        QVERIFY(left);
        QQuickItem *root = left->window()->rootObject();
        QQuickItem *send = findItem(root, QStringLiteral("dropAction_airDrop"));
        QVERIFY(send);
        QTest::qWait(500); // the question to the bus has had its answer
        QVERIFY(!send->isEnabled());
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(send);
        QVERIFY(accessible);
        QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Send to Device"));
        QCOMPARE(accessible->text(QAccessible::Description), KdeConnectDevices::unavailableText());

        // Hovering it shows why.
        const QPoint centre = centreOf(send);
        xdotool({ QStringLiteral("mousemove"), QString::number(centre.x()), QString::number(centre.y()) });
        QQuickItem *tooltip = findItem(root, QStringLiteral("sendToDeviceTooltip"));
        QVERIFY(tooltip);
        QTRY_VERIFY_WITH_TIMEOUT(tooltip->isVisible(), 5000);
        QCOMPARE(findItem(tooltip, QStringLiteral("sendToDeviceTooltipText"))->property("text").toString(),
            QStringLiteral("No paired device is reachable. Pair a phone with KDE Connect."));

        // Pressed with the mouse or by a screen reader, it does nothing: the drop stays.
        xdotool({ QStringLiteral("click"), QStringLiteral("1") });
        if (QAccessibleActionInterface *actions = accessible->actionInterface())
            actions->doAction(QAccessibleActionInterface::pressAction());
        QTest::qWait(500);
        QVERIFY(left->surface()->hasDropPayload());
        QCOMPARE(left->surface()->presentation(), NotchPresentation::expanded);
    }

    void sendToDeviceSendsTheFileOnceAPhoneIsReachable()
    {
        NotchWindowController *left = dropOnLeft(droppedFile(m_report));
        QVERIFY(left);
        QQuickItem *send = findItem(left->window()->rootObject(), QStringLiteral("dropAction_airDrop"));
        QVERIFY(send);
        QVERIFY(!send->isEnabled());

        // The phone's service starts while the drop is shown: the button comes alive.
        FakeKdeConnect service;
        service.addDevice(QStringLiteral("pixel_7"), QStringLiteral("Pixel 7"), true, true);
        QVERIFY(service.start());
        QTRY_VERIFY_WITH_TIMEOUT(send->isEnabled(), 15000);
        QTRY_COMPARE_WITH_TIMEOUT(QAccessible::queryAccessibleInterface(send)->text(QAccessible::Description),
            QStringLiteral("Sends to Pixel 7."), 15000);

        clickOn(send);
        QTRY_COMPARE_WITH_TIMEOUT(service.calls.size(), size_t(1), 15000);
        QCOMPARE(service.calls[0].method, QStringLiteral("shareUrl"));
        QCOMPARE(
            service.calls[0].arguments, QStringList({ QUrl::fromLocalFile(m_report).toString(QUrl::FullyEncoded) }));
        // Sent: the surface goes back to its modules.
        QTRY_VERIFY_WITH_TIMEOUT(!left->surface()->hasDropPayload(), 10000);

        // The service ends: the next drop's button is disabled again.
        service.stop();
        left = dropOnLeft(droppedFile(m_report));
        QVERIFY(left);
        send = findItem(left->window()->rootObject(), QStringLiteral("dropAction_airDrop"));
        QVERIFY(send);
        QTRY_VERIFY_WITH_TIMEOUT(!send->isEnabled(), 15000);
    }

private:
    QString mailed() const { return QDir(m_home).filePath(QStringLiteral("mail.txt")); }

    NotchWindowController *surface(NotchSide side) const
    {
        for (const auto &controller : m_model->notchController()->controllers()) {
            if (controller->side() == side)
                return controller.get();
        }
        return nullptr;
    }

    // The left surface open on a drop, its buttons laid out; nullptr when it did not open.
    NotchWindowController *dropOnLeft(std::shared_ptr<const DropPayload> payload)
    {
        NotchWindowController *left = surface(NotchSide::left);
        if (!left)
            return nullptr;
        left->dragDidDrop(std::move(payload));
        const bool shown = QTest::qWaitFor(
            [left] {
                if (left->frameInScreen().size() != QSize(268, 340) || !left->window()->isExposed())
                    return false;
                QQuickItem *share = findItem(left->window()->rootObject(), QStringLiteral("dropAction_share"));
                QQuickItem *send = findItem(left->window()->rootObject(), QStringLiteral("dropAction_airDrop"));
                return share && send && share->isVisible() && share->width() > 0 && send->width() > 0;
            },
            15000);
        return shown ? left : nullptr;
    }

    std::unique_ptr<AppModel> m_model;
    QString m_home;
    QString m_report;
};

QTEST_MAIN(TestDropShareX11)
#include "test_drop_share_x11.moc"
