#pragma once

// Other applications on the test's X display: xdotool for the pointer and keyboard,
// xclip as the application that copies and pastes.

#include <QByteArray>
#include <QProcess>
#include <QSignalSpy>
#include <QString>
#include <QStringList>

namespace ledgewise::testing {

// Runs xdotool to its end; its output, trimmed.
inline QString xdotool(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral("xdotool"), arguments);
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// Another application copies `bytes` (as `target` when given); true once it owns the
// clipboard.
inline bool copyElsewhere(const QByteArray &bytes, const QString &target = QString())
{
    QStringList arguments = {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-i")};
    if (!target.isEmpty())
        arguments << QStringLiteral("-t") << target;
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"), arguments);
    if (!xclip.waitForStarted())
        return false;
    xclip.write(bytes);
    xclip.closeWriteChannel();
    return xclip.waitForFinished(5000) && xclip.exitCode() == 0;
}

// What another application gets when it pastes (`target`, or xclip's choice). The event
// loop keeps running meanwhile, so this process can serve the selection itself.
inline QByteArray pasteElsewhere(const QString &target = QString())
{
    QStringList arguments = {QStringLiteral("-selection"), QStringLiteral("clipboard"), QStringLiteral("-o")};
    if (!target.isEmpty())
        arguments << QStringLiteral("-t") << target;
    QProcess xclip;
    QSignalSpy finished(&xclip, &QProcess::finished);
    xclip.start(QStringLiteral("xclip"), arguments);
    if (!finished.wait(10000))
        return "<xclip did not finish>";
    return xclip.readAllStandardOutput();
}

} // namespace ledgewise::testing
