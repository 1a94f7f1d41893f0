// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// The lock that keeps a second Ledgewise off the user's data: held once, taken over
// from a holder that is gone, and told apart from a folder where no lock can be made.
#include "platform/xdg/instance_lock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace ledgewise;

class TestInstanceLock : public QObject
{
    Q_OBJECT

private slots:
    void theFirstHoldsItAndTheSecondIsToldWho()
    {
        QTemporaryDir home;
        const QString folder = home.filePath(QStringLiteral("share/Ledgewise"));
        InstanceLock first(folder);
        QCOMPARE(first.tryLock(), InstanceLock::Outcome::held);
        QCOMPARE(first.path(), QDir(folder).filePath(QStringLiteral("ledgewise.lock")));
        // The missing folder was made, for the owner only.
        QCOMPARE(QFileInfo(folder).permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther),
            QFileDevice::Permissions());

        InstanceLock second(folder);
        QCOMPARE(second.tryLock(), InstanceLock::Outcome::heldByOther);
        QCOMPARE(second.holder(), QCoreApplication::applicationPid());
    }

    void aLockLeftByAProcessThatIsGoneIsTakenOver()
    {
        QTemporaryDir folder;
        // A process that has ended: its id names no one now.
        QProcess gone;
        gone.start(QStringLiteral("true"), {});
        QVERIFY(gone.waitForStarted());
        const qint64 deadPid = gone.processId();
        QVERIFY(gone.waitForFinished());
        QFile stale(QDir(folder.path()).filePath(QStringLiteral("ledgewise.lock")));
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.write(QByteArray::number(deadPid) + "\nledgewise\n" + QSysInfo::machineHostName().toUtf8() + "\n");
        stale.close();

        InstanceLock lock(folder.path());
        QCOMPARE(lock.tryLock(), InstanceLock::Outcome::held);
    }

    void aLockFromBeforeTheMachineRestartedIsTakenOver()
    {
        // The data folder outlives a restart; a process id in it may since name another
        // process, even one named the same.
        QTemporaryDir folder;
        QProcess namesake;
        namesake.start(QStringLiteral("sleep"), { QStringLiteral("30") });
        QVERIFY(namesake.waitForStarted());
        QFile left(QDir(folder.path()).filePath(QStringLiteral("ledgewise.lock")));
        QVERIFY(left.open(QIODevice::WriteOnly));
        left.write(QByteArray::number(namesake.processId()) + "\nsleep\n" + QSysInfo::machineHostName().toUtf8() + "\n"
            + QSysInfo::machineUniqueId() + "\n" + "00000000-0000-0000-0000-000000000000\n");
        left.close();

        InstanceLock lock(folder.path());
        QCOMPARE(lock.tryLock(), InstanceLock::Outcome::held);
        namesake.kill();
        namesake.waitForFinished();
    }

    void whereNoLockCanBeMadeItSaysSo()
    {
        InstanceLock lock(QStringLiteral("/dev/null/Ledgewise"));
        QCOMPARE(lock.tryLock(), InstanceLock::Outcome::unavailable);
    }
};

QTEST_GUILESS_MAIN(TestInstanceLock)
#include "test_instance_lock.moc"
