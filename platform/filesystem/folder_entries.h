// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <functional>
#include <optional>

namespace ledgewise {

// What one lstat tells about a regular file.
struct FileFacts {
    qint64 size = 0;
    qint64 modifiedNs = 0; // content modification time, since the epoch
    friend bool operator==(const FileFacts &, const FileFacts &) = default;
};

// Paths here are raw bytes, as the file system holds them: a name need not be valid
// UTF-8, and turning it into a QString and back would lose the bytes that are not.
namespace FolderEntries {

// The file at `path`, when it is a regular file (a symbolic link is not followed).
std::optional<FileFacts> regularFile(const QByteArray &path);

// Whether anything is at `path` (a dangling link counts).
bool exists(const QByteArray &path);

// Calls `visit` for every regular file of the folder's top level (links not followed,
// nothing below it) until `visit` returns false. False when the folder cannot be read.
bool forEachRegularFile(
    const QByteArray &folder, const std::function<bool(const QByteArray &name, const FileFacts &facts)> &visit);

// `folder` + "/" + `name`, without doubling a trailing slash.
QByteArray childPath(const QByteArray &folder, const QByteArray &name);

// A file URL that keeps every byte of the path: bytes that are not UTF-8 stay
// percent-encoded in it (QUrl::fromLocalFile on a decoded name would replace them).
QUrl urlOfPath(const QByteArray &path);

// The path bytes of a local file URL, the inverse of urlOfPath; empty for other URLs.
QByteArray pathOfUrl(const QUrl &url);

// A name to show: UTF-8 as it is, any invalid byte as U+FFFD.
QString readableName(const QByteArray &name);

} // namespace FolderEntries
} // namespace ledgewise
