// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/unique_name.h"

#include <QDir>
#include <QFileInfo>

namespace ledgewise {

QString uniqueName(const QString &name, const std::function<bool(const QString &)> &taken)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const bool hasExtension = dot > 0 && dot < name.size() - 1;
    const QString base = hasExtension ? name.left(dot) : name;
    const QString extension = hasExtension ? name.mid(dot + 1) : QString();

    QString candidate = name;
    for (int n = 1; taken(candidate); ++n) {
        candidate = hasExtension ? QStringLiteral("%1-%2.%3").arg(base).arg(n).arg(extension)
                                 : QStringLiteral("%1-%2").arg(base).arg(n);
    }
    return candidate;
}

QString uniquePath(const QString &folder, const QString &name)
{
    const QDir dir(folder);
    // A dangling symbolic link is still a name that exists.
    const auto exists = [&dir](const QString &candidate) {
        const QFileInfo info(dir.filePath(candidate));
        return info.exists() || info.isSymLink();
    };
    return dir.filePath(uniqueName(name, exists));
}

} // namespace ledgewise
