// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/xdg/standard_folders.h"

#include <QDir>
#include <QStandardPaths>

namespace ledgewise::StandardFolders {

QString downloads()
{
    const QString location = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (!location.isEmpty() && location != QDir::homePath())
        return location;
    return QDir::home().filePath(QStringLiteral("Downloads"));
}

QString applicationData()
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    if (!base.isEmpty())
        return QDir(base).filePath(QStringLiteral("Ledgewise"));
    return QDir(QDir::tempPath()).filePath(QStringLiteral("Ledgewise"));
}

QString applicationCache()
{
    const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    if (!base.isEmpty())
        return QDir(base).filePath(QStringLiteral("Ledgewise"));
    return QDir(QDir::tempPath()).filePath(QStringLiteral("Ledgewise-cache"));
}

} // namespace ledgewise::StandardFolders
