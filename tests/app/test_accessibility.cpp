// Ledgewise as a screen reader meets it: over the accessibility bus (AT-SPI), the
// surfaces are frames named after their side, a drop's actions are buttons named by
// their titles that can be found by name and pressed.
#include "app/preferences_codec.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTest>

namespace {

QString xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

void pointerTo(int x, int y)
{
    xdotool({QStringLiteral("mousemove"), QString::number(x), QString::number(y)});
}

// Presses a control through AT-SPI; returns what the probe said.
QByteArray press(const QString &role, const QString &name)
{
    QProcess probe;
    probe.setProcessChannelMode(QProcess::MergedChannels);
    probe.start(QStringLiteral("/usr/bin/python3"),
                {qEnvironmentVariable("LEDGEWISE_SOURCE_DIR") + QStringLiteral("/tests/support/atspi_press.py"),
                 QStringLiteral("Ledgewise"), role, name});
    probe.waitForFinished(30000);
    return probe.readAll().trimmed();
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void dropActionsArePressedByName()
    {
        // A classic surface keeps its corners when it opens, so the drag below stays in it.
        ledgewise::Preferences preferences;
        preferences.style = ledgewise::NotchStyle::classic;
        preferences.animateInterface = false;
        {
            QSettings settings(QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
                                   .filePath(QStringLiteral("Ledgewise/Ledgewise.conf")),
                               QSettings::NativeFormat);
            settings.setValue(QStringLiteral("ledgewise.preferences"), *ledgewise::encodePreferences(preferences));
        }

        QProcess app;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
        app.setProcessEnvironment(environment);
        app.start(qEnvironmentVariable("LEDGEWISE_EXECUTABLE"), {});
        QVERIFY(app.waitForStarted(10000));
        QTRY_VERIFY_WITH_TIMEOUT(!xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
                                           QStringLiteral("Ledgewise left surface")})
                                      .isEmpty(),
                                 10000);

        // Another application drags a text onto the left surface.
        QProcess source;
        source.start(qEnvironmentVariable("DRAG_SOURCE"),
                     {QStringLiteral("600"), QStringLiteral("500"), QStringLiteral("read aloud")});
        QVERIFY(source.waitForReadyRead(10000));
        QTRY_VERIFY(!xdotool({QStringLiteral("search"), QStringLiteral("--name"), QStringLiteral("drag source")}).isEmpty());
        pointerTo(650, 550);
        xdotool({QStringLiteral("mousedown"), QStringLiteral("1")});
        for (const QPoint &step : {QPoint(600, 400), QPoint(300, 100), QPoint(122, 15), QPoint(123, 16), QPoint(140, 80)}) {
            pointerTo(step.x(), step.y());
            QTest::qWait(150);
        }
        xdotool({QStringLiteral("mouseup"), QStringLiteral("1")});
        source.kill();
        source.waitForFinished();

        // "Save" is a button that assistive technology finds by name and presses.
        QCOMPARE(press(QStringLiteral("push button"), QStringLiteral("Save")), QByteArray("pressed"));
        const QString saved = QDir::home().filePath(QStringLiteral("Downloads/Dropped.txt"));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(saved), 5000);
        QFile file(saved);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("read aloud"));

        app.terminate();
        QVERIFY(app.waitForFinished(10000));
        QCOMPARE(app.exitCode(), 0);
    }
};

QTEST_GUILESS_MAIN(TestAccessibility)
#include "test_accessibility.moc"
