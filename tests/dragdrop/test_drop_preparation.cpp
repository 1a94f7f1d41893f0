// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Share and Send to Device with a dropped text of many megabytes: the slow part (all of
// the text converted, or written to a file a mail can carry) is told apart from the
// quick actions, and done to the letter.
#include "dragdrop/drop_preparation.h"

#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>

using namespace ledgewise;

namespace {

DropPayload droppedText(const QByteArray &utf8)
{
    QMimeData data;
    data.setData(QStringLiteral("text/plain"), utf8);
    return *DropPayload::from(data);
}

QByteArray longText()
{
    QByteArray text(DropPreparation::longestMailBody + 1, 'x');
    text.replace(0, 7, "Chapter");
    return text;
}

} // namespace

class TestDropPreparation : public QObject
{
    Q_OBJECT

private slots:
    void onlyShareAndSendOfALongTextAreSlow()
    {
        const DropPayload text = droppedText(longText());
        QVERIFY(DropPreparation::isSlow(DropAction::share, text));
        QVERIFY(DropPreparation::isSlow(DropAction::airDrop, text));
        QVERIFY(!DropPreparation::isSlow(DropAction::copy, text));
        QVERIFY(!DropPreparation::isSlow(DropAction::open, text));
        QVERIFY(!DropPreparation::isSlow(DropAction::save, text)); // saves have their own worker
        // Exactly the longest body still goes in the mail as it is.
        const DropPayload body = droppedText(QByteArray(DropPreparation::longestMailBody, 'y'));
        QVERIFY(!DropPreparation::isSlow(DropAction::share, body));
        DropPayload files;
        files.kind = DropPayload::Kind::files;
        files.fileURLs = { QUrl::fromLocalFile(QStringLiteral("/tmp/a")) };
        QVERIFY(!DropPreparation::isSlow(DropAction::share, files));
    }

    void aLongTextSharedBecomesATextFileToAttach()
    {
        QTemporaryDir cache;
        const QString folder = cache.filePath(QStringLiteral("Shared"));
        const QByteArray text = longText();
        const DropPayload first = DropPreparation::prepare(DropAction::share, droppedText(text), folder);
        QCOMPARE(first.kind, DropPayload::Kind::files);
        QCOMPARE(first.fileURLs.size(), 1);
        const QString path = first.fileURLs.constFirst().toLocalFile();
        QCOMPARE(QFileInfo(path).fileName(), QStringLiteral("Dropped text.txt"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), text);
        // A mail still open with the first keeps it: the next goes beside it.
        const DropPayload second = DropPreparation::prepare(DropAction::share, droppedText("other " + text), folder);
        QCOMPARE(
            QFileInfo(second.fileURLs.constFirst().toLocalFile()).fileName(), QStringLiteral("Dropped text-1.txt"));
        QCOMPARE(QFileInfo(path).size(), text.size());
    }

    void aShareFolderThatCannotBeMadeSharesNothing()
    {
        QTemporaryDir cache;
        QFile blocker(cache.filePath(QStringLiteral("Shared")));
        QVERIFY(blocker.open(QIODevice::WriteOnly)); // a file where the folder would go
        blocker.close();
        const DropPayload prepared = DropPreparation::prepare(
            DropAction::share, droppedText(longText()), cache.filePath(QStringLiteral("Shared")));
        QVERIFY(prepared.fileURLs.isEmpty());
        QVERIFY(!prepared.text);
    }

    void aLongTextSentToAPhoneArrivesConverted()
    {
        const QByteArray text = "Grüße " + longText();
        const DropPayload payload = droppedText(text);
        QVERIFY(!payload.text.isDecoded());
        const DropPayload prepared = DropPreparation::prepare(DropAction::airDrop, payload, QString());
        QVERIFY(prepared.text.isDecoded());
        QCOMPARE(*prepared.text, QString::fromUtf8(text));
        // The drop itself is as it was: its copy did the work.
        QVERIFY(!payload.text.isDecoded());
    }
};

QTEST_GUILESS_MAIN(TestDropPreparation)
#include "test_drop_preparation.moc"
