// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What the surfaces show of other people's text, as a user and a screen reader meet it:
// markup copied or dropped from another application is shown as the characters typed
// and fetches nothing; and over the accessibility bus (AT-SPI) the glance text, the
// clipboard rows, the drop summary, the Downloads names and a running countdown are
// read with their text.
#include "tests/support/atspi.h"
#include "tests/support/drag_source_process.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>

using namespace ledgewise::testing;

namespace {

// True once the clipboard history saved on disk holds `text`.
bool historyHolds(const QString &text)
{
    QFile file(QDir(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation))
                   .filePath(QStringLiteral("Ledgewise/clipboard.json")));
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonArray entries = QJsonDocument::fromJson(file.readAll()).array();
    return std::any_of(entries.begin(), entries.end(),
        [&text](const QJsonValue &entry) { return entry.toObject().value(QStringLiteral("text")).toString() == text; });
}

// Waits (generously: a full suite runs beside it) until what the screen reader reads
// passes `check`; leaves what it read last in `lastRead`.
bool readsEventually(const std::function<bool(const QStringList &)> &check, QStringList *lastRead)
{
    QElapsedTimer waited;
    waited.start();
    do {
        *lastRead = readTree();
        if (check(*lastRead))
            return true;
        QTest::qWait(300);
    } while (waited.elapsed() < 30000);
    return false;
}

// ...until the surface of `side` reads `line`.
bool readsEventually(const QString &side, const QString &line, QStringList *lastRead)
{
    return readsEventually([&](const QStringList &read) { return surfaceLines(read, side).contains(line); }, lastRead);
}

// A web server on this machine that only counts who connects to it.
class CountingServer : public QObject
{
public:
    bool listen()
    {
        connect(&m_server, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = m_server.nextPendingConnection()) {
                ++m_connections;
                socket->close();
                socket->deleteLater();
            }
        });
        return m_server.listen(QHostAddress::LocalHost);
    }
    quint16 port() const { return m_server.serverPort(); }
    int connections() const { return m_connections; }
    void forget() { m_connections = 0; }

private:
    QTcpServer m_server;
    int m_connections = 0;
};

} // namespace

class TestSurfaceTexts : public QObject
{
    Q_OBJECT

private slots:
    // Each test starts with no clipboard history of an earlier one.
    void init()
    {
        QDir data(QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
        if (data.cd(QStringLiteral("Ledgewise")))
            QVERIFY(data.removeRecursively());
    }

    void markupFromOtherApplicationsIsShownAsTypedAndFetchesNothing()
    {
        CountingServer server;
        QVERIFY(server.listen());
        const QString markup
            = QStringLiteral("<img src=\"http://127.0.0.1:%1/x.png\"> <b>bold</b> &amp;").arg(server.port());

        // The control: the same text shown as markup by a QML Text in a window of the
        // test's own fetches the picture from the server, so a fetch by Ledgewise would
        // be seen. How long it took sets how long Ledgewise is given below.
        QElapsedTimer controlFetch;
        controlFetch.start();
        {
            QQuickView view;
            QQmlComponent component(view.engine());
            component.setData("import QtQuick\nText { width: 300; height: 40 }", QUrl());
            std::unique_ptr<QObject> text(component.create());
            QVERIFY2(text, qPrintable(component.errorString()));
            text->setProperty("text", markup);
            qobject_cast<QQuickItem *>(text.get())->setParentItem(view.contentItem());
            view.resize(300, 40);
            view.show();
            QTRY_VERIFY_WITH_TIMEOUT(server.connections() > 0, 20000);
        }
        const qint64 fetchTook = controlFetch.elapsed();
        QTest::qWait(200); // a second connection of the control's, if any, is not Ledgewise's
        server.forget();

        storeStillClassicPreferences();
        QProcess app;
        QVERIFY(startLedgewise(app));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceGeometry(QStringLiteral("left")).isEmpty(), 15000);

        // Another application copies the markup; the left surface glances at it when the
        // pointer rests on it.
        QVERIFY(copyElsewhere(markup.toUtf8()));
        QTRY_VERIFY_WITH_TIMEOUT(historyHolds(markup), 15000);
        QStringList read;
        const QRect sleeping = surfaceGeometry(QStringLiteral("left"));
        pointerTo(sleeping.center().x(), sleeping.center().y());
        QVERIFY2(readsEventually(QStringLiteral("left"), QStringLiteral("label|") + markup, &read),
            qPrintable(read.join(QLatin1Char('\n'))));

        // Opened, its clipboard row reads the characters as copied.
        xdotool({ QStringLiteral("click"), QStringLiteral("1") });
        QVERIFY2(readsEventually(QStringLiteral("left"), QStringLiteral("push button|") + markup, &read),
            qPrintable(read.join(QLatin1Char('\n'))));
        QVERIFY2(
            read.contains(QStringLiteral("push button|Delete ") + markup), qPrintable(read.join(QLatin1Char('\n'))));

        // A click elsewhere closes it; then the markup is dropped onto it.
        pointerTo(700, 700);
        xdotool({ QStringLiteral("click"), QStringLiteral("1") });
        QTRY_VERIFY_WITH_TIMEOUT(surfaceGeometry(QStringLiteral("left")).height() < 100, 15000);
        QCOMPARE(dragTextOntoLeftSurface(markup), QByteArray("copy"));
        // Its summary is read with the drop's actions, as dropped.
        QVERIFY2(readsEventually(
                     [&markup](const QStringList &read) {
                         const QStringList left = surfaceLines(read, QStringLiteral("left"));
                         return left.contains(QStringLiteral("label|") + markup)
                             && left.contains(QStringLiteral("push button|Copy"));
                     },
                     &read),
            qPrintable(read.join(QLatin1Char('\n'))));

        // Every view of the markup has been made; any fetch it started would have
        // reached the server by now, with a margin for a loaded machine.
        QTest::qWait(int(qBound(qint64(3000), 5 * fetchTook, qint64(10000))));
        QCOMPARE(server.connections(), 0);

        app.terminate();
        QVERIFY(app.waitForFinished(10000));
        QCOMPARE(app.exitCode(), 0);
    }

    void downloadsNamesAndTheRunningCountdownAreRead()
    {
        // Two downloads, one with a name that looks like markup.
        const QStringList names
            = { QStringLiteral("quarterly report.pdf"), QStringLiteral("<b>notes &amp; more <i>.txt") };
        for (const QString &name : names) {
            QFile file(QDir::home().filePath(QStringLiteral("Downloads/") + name));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write("downloaded");
        }
        storeStillClassicPreferences();
        QProcess app;
        QVERIFY(startLedgewise(app));
        QTRY_VERIFY_WITH_TIMEOUT(!surfaceGeometry(QStringLiteral("left")).isEmpty(), 15000);

        const QRect sleeping = surfaceGeometry(QStringLiteral("left"));
        pointerTo(sleeping.center().x(), sleeping.center().y());
        xdotool({ QStringLiteral("click"), QStringLiteral("1") });
        QStringList read;
        for (const QString &name : names)
            QVERIFY2(readsEventually(QStringLiteral("left"), QStringLiteral("push button|") + name, &read),
                qPrintable(read.join(QLatin1Char('\n'))));

        // The panels' headings, and what an empty history says, are read too.
        for (const char *heading : { "Clipboard", "Copies stay on this computer.", "Downloads", "Timer" })
            QVERIFY2(
                surfaceLines(read, QStringLiteral("left")).contains(QStringLiteral("label|") + QLatin1String(heading)),
                qPrintable(read.join(QLatin1Char('\n'))));

        // A countdown started from its preset: the open panel's clock reads its time as
        // it runs, and so does the other surface, which shows it too.
        QCOMPARE(press(QStringLiteral("push button"), QStringLiteral("5m")), QByteArray("pressed"));
        const QRegularExpression running(QStringLiteral("^label\\|(5:00|4:[0-5][0-9])$"));
        const auto clock = [&running](const QStringList &read) {
            const QStringList shown = surfaceLines(read, QStringLiteral("left")).filter(running);
            return shown.isEmpty() ? QString() : shown.constFirst();
        };
        QVERIFY2(readsEventually([&](const QStringList &read) { return !clock(read).isEmpty(); }, &read),
            qPrintable(read.join(QLatin1Char('\n'))));
        const QString first = clock(read);
        QVERIFY2(readsEventually(
                     [&](const QStringList &read) {
                         return !surfaceLines(read, QStringLiteral("right")).filter(running).isEmpty();
                     },
                     &read),
            qPrintable(read.join(QLatin1Char('\n'))));
        // ...and the clock reads the new time once it has moved on.
        QVERIFY2(readsEventually(
                     [&](const QStringList &read) { return !clock(read).isEmpty() && clock(read) != first; }, &read),
            qPrintable(first + QLatin1Char('\n') + read.join(QLatin1Char('\n'))));

        app.terminate();
        QVERIFY(app.waitForFinished(10000));
        QCOMPARE(app.exitCode(), 0);
    }
};

QTEST_MAIN(TestSurfaceTexts)
#include "test_surface_texts.moc"
