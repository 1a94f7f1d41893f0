// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdg/file_chooser.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cstdio>

namespace ledgewise {

DesktopFileChooser::DesktopFileChooser() = default;

DesktopFileChooser::~DesktopFileChooser()
{
    // Closed without an answer: whoever asked may be going away too.
    m_answer = nullptr;
    if (m_process) {
        m_process->disconnect();
        m_process->kill();
        m_process->waitForFinished(1000);
    }
}

QString DesktopFileChooser::programPath()
{
    if (const QString chosen = qEnvironmentVariable("LEDGEWISE_FILE_CHOOSER"); !chosen.isEmpty())
        return chosen;
    const QString beside
        = QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("ledgewise-file-chooser"));
    if (QFileInfo(beside).isExecutable())
        return beside;
    return QStringLiteral(LEDGEWISE_LIBEXEC_DIR "/ledgewise-file-chooser");
}

bool DesktopFileChooser::isOpen() const
{
    return m_process && m_process->state() != QProcess::NotRunning;
}

void DesktopFileChooser::chooseFile(
    const QString &message, const QString &startFolder, const QString &nameFilter, QObject *context, Answer answer)
{
    // Only one chooser at a time: the earlier one is answered as cancelled, and goes.
    if (m_process) {
        std::unique_ptr<QProcess> earlier = std::move(m_process);
        earlier->disconnect();
        earlier->kill();
        earlier->waitForFinished(1000);
        finish(QString());
    }
    m_answer = std::move(answer);
    m_context = context;
    m_hasContext = context != nullptr;

    m_process = std::make_unique<QProcess>();
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments { QStringLiteral("--message"), message, QStringLiteral("--start-folder"), startFolder };
    if (!nameFilter.isEmpty())
        arguments << QStringLiteral("--name-filter") << nameFilter;
    QProcess *process = m_process.get();
    // Answered or not, a finished chooser is no longer ours to cancel. The process is
    // this object's own, so the handlers may reach it; they run from the event loop.
    QObject::connect(process, &QProcess::finished, process, [this, process](int exitCode, QProcess::ExitStatus status) {
        QByteArray chosen = process->readAllStandardOutput();
        if (chosen.endsWith('\n'))
            chosen.chop(1);
        const bool answered = status == QProcess::NormalExit && exitCode == 0 && !chosen.isEmpty();
        m_process.release()->deleteLater();
        finish(answered ? QFile::decodeName(chosen) : QString());
    });
    QObject::connect(process, &QProcess::errorOccurred, process, [this, process](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        std::fprintf(stderr, "Ledgewise cannot show a file chooser: %s: %s\n", qPrintable(process->program()),
            qPrintable(process->errorString()));
        m_process.release()->deleteLater();
        finish(QString());
    });
    m_process->start(programPath(), arguments);
}

void DesktopFileChooser::finish(const QString &path)
{
    Answer answer = std::move(m_answer);
    m_answer = nullptr;
    // A caller gone meanwhile is never called.
    if (!answer || (m_hasContext && !m_context))
        return;
    answer(path);
}

} // namespace ledgewise
