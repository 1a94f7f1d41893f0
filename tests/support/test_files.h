// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// Files a test writes before it starts something and reads back afterwards, as a
// user's folders hold them.

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QTest>

namespace ledgewise::testing {

// Writes `bytes` to `path` (made executable by its owner when asked); fails the test
// when it cannot.
inline void writeFile(const QString &path, const QByteArray &bytes, bool executable = false)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    file.close();
    if (executable)
        QVERIFY(file.setPermissions(file.permissions() | QFileDevice::ExeOwner));
}

// What `path` holds; empty when it cannot be read.
inline QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace ledgewise::testing
