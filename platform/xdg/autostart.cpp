// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdg/autostart.h"

#include "platform/xdg/autostart_entry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>

namespace ledgewise {

namespace {

bool removeIfPresent(const QString &path)
{
    QFile file(path);
    return !file.exists() || file.remove();
}

} // namespace

XdgAutostart::XdgAutostart(QString folder, QString program)
    : m_folder(std::move(folder))
    , m_program(program.isEmpty() ? QCoreApplication::applicationFilePath() : std::move(program))
{ }

QString XdgAutostart::defaultFolder()
{
    return QDir(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation))
        .filePath(QStringLiteral("autostart"));
}

QString XdgAutostart::path() const
{
    // Named by the application id, as the installed Desktop Entry is.
    return QDir(m_folder).filePath(QStringLiteral("org.ledgewise.Ledgewise.desktop"));
}

QString XdgAutostart::legacyPath() const
{
    return QDir(m_folder).filePath(QStringLiteral("ledgewise.desktop"));
}

bool XdgAutostart::isEnabled() const
{
    QFile file(QFile::exists(path()) ? path() : legacyPath());
    if (!file.open(QIODevice::ReadOnly))
        return false;
    // An entry is a few lines; a huge file here is not ours to read whole.
    return AutostartEntry::isEnabled(file.read(64 * 1024));
}

bool XdgAutostart::enable()
{
    if (!QDir().mkpath(m_folder))
        return false;
    QSaveFile file(path());
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray text = AutostartEntry::text(m_program);
    if (file.write(text) != text.size())
        return false;
    // Two entries would start Ledgewise twice at login, and the second start opens
    // the settings.
    return file.commit() && removeIfPresent(legacyPath());
}

bool XdgAutostart::disable()
{
    return removeIfPresent(path()) && removeIfPresent(legacyPath());
}

} // namespace ledgewise
