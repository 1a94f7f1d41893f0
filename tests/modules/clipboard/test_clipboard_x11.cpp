#include "modules/clipboard/clipboard_store.h"
#include "platform/clipboard/qt_pasteboard.h"
#include "tests/modules/clipboard/clipboard_test_support.h"

#include <QDir>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace ledgewise;
using namespace ledgewise::testing;

namespace {

// xclip takes the clipboard and keeps serving it in the background until another
// application takes it over.
class OtherApplication
{
public:
    ~OtherApplication() { stop(); }

    void copy(const QByteArray &bytes, const QString &target = QString())
    {
        stop();
        QStringList arguments = {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i")};
        if (!target.isEmpty())
            arguments << QStringLiteral("-t") << target;
        m_process = std::make_unique<QProcess>();
        m_process->start(QStringLiteral("xclip"), arguments);
        m_process->waitForStarted();
        m_process->write(bytes);
        m_process->closeWriteChannel();
    }

    // Several types at once, which xclip cannot offer.
    void offer(const QStringList &typeEqualsValue)
    {
        stop();
        m_process = std::make_unique<QProcess>();
        m_process->start(qEnvironmentVariable("CLIPBOARD_OFFER"), typeEqualsValue);
        QVERIFY(m_process->waitForReadyRead(10000));
        QCOMPARE(m_process->readLine().trimmed(), QByteArray("ready"));
    }

    void stop()
    {
        if (m_process) {
            m_process->kill();
            m_process->waitForFinished();
            m_process.reset();
        }
    }

private:
    std::unique_ptr<QProcess> m_process;
};

QByteArray pasteElsewhere(const QString &target)
{
    QProcess xclip;
    QSignalSpy finished(&xclip, &QProcess::finished);
    xclip.start(QStringLiteral("xclip"),
                {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o"), QStringLiteral("-t"), target});
    if (!finished.wait(10000))
        return "<xclip did not finish>";
    return xclip.readAllStandardOutput();
}

QStringList texts(const ClipboardStore &store)
{
    QStringList result;
    for (const ClipboardItem &item : store.items())
        result << item.text.value_or(item.url.value_or(QStringLiteral("<image>")));
    return result;
}

} // namespace

class TestClipboardX11 : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void contentAtStartIsNotCapturedButTheNextCopyIs()
    {
        OtherApplication other;
        other.copy("already there");
        QTRY_COMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")), QByteArray("already there"));
        QtPasteboard pasteboard;
        ClipboardStore store(pasteboard, m_folder->path(), 50, true);
        QVERIFY(!store.isPolling());
        QTest::qWait(300); // nothing may arrive: the start content is not a copy
        QVERIFY(store.items().isEmpty());

        other.copy("copied in another application");
        QTRY_COMPARE(texts(store), QStringList({"copied in another application"}));
        const QJsonArray onDisk = historyOnDisk(store.historyPath());
        QCOMPARE(onDisk.size(), 1);
        QCOMPARE(onDisk[0].toObject().value("text").toString(), QStringLiteral("copied in another application"));
        QCOMPARE(onDisk[0].toObject().value("kind").toString(), QStringLiteral("text"));
    }

    void linksAndImagesFromAnotherApplication()
    {
        QtPasteboard pasteboard;
        ClipboardStore store(pasteboard, m_folder->path(), 50, true);
        OtherApplication other;
        other.copy("https://example.org/page\r\n", QStringLiteral("text/uri-list"));
        QTRY_COMPARE(store.items().size(), 1);
        QCOMPARE(store.items()[0].kind, ClipboardKind::url);
        QCOMPARE(store.items()[0].url, QStringLiteral("https://example.org/page"));

        other.copy("HTTP://EXAMPLE.ORG/\r\n", QStringLiteral("text/uri-list"));
        other.copy(pngOf(Qt::cyan, QSize(30, 20)), QStringLiteral("image/png"));
        QTRY_COMPARE(store.items().size(), 2);
        const ClipboardItem image = store.items()[0];
        QCOMPARE(image.kind, ClipboardKind::image);
        const QString file = QDir(store.imagesDirectory()).filePath(*image.imageFileName);
        QVERIFY(QFile::exists(file));
        QCOMPARE(QImage(file).size(), QSize(30, 20));
        QCOMPARE(historyOnDisk(store.historyPath())[0].toObject().value("imageFileName").toString(),
                 *image.imageFileName);
    }

    void secretsFromAPasswordManagerAreSkipped()
    {
        QtPasteboard pasteboard;
        ClipboardStore store(pasteboard, m_folder->path(), 50, true);
        OtherApplication other;
        other.offer({QStringLiteral("text/plain=hunter2"), QStringLiteral("x-kde-passwordManagerHint=secret")});
        QTRY_COMPARE(pasteElsewhere(QStringLiteral("text/plain")), QByteArray("hunter2"));
        other.copy("not secret");
        QTRY_COMPARE(texts(store), QStringList({"not secret"}));
        QFile history(store.historyPath());
        QVERIFY(history.open(QIODevice::ReadOnly));
        QVERIFY(!history.readAll().contains("hunter2"));
    }

    void copyBackReachesOtherApplicationsAndIsNotCapturedAgain()
    {
        QtPasteboard pasteboard;
        ClipboardStore store(pasteboard, m_folder->path(), 50, true);
        OtherApplication other;
        other.copy("first");
        QTRY_COMPARE(texts(store), QStringList({"first"}));
        other.copy("second");
        QTRY_COMPARE(texts(store), QStringList({"second", "first"}));
        other.stop();

        store.copyBack(store.items()[1]);
        QCOMPARE(pasteElsewhere(QStringLiteral("UTF8_STRING")), QByteArray("first"));
        QTest::qWait(300);
        QCOMPARE(texts(store), QStringList({"second", "first"}));

        other.copy("third");
        QTRY_COMPARE(texts(store), QStringList({"third", "second", "first"}));
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(TestClipboardX11)
#include "test_clipboard_x11.moc"
