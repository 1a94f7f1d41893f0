// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/filesystem/folder_entries.h"

#include <QStringDecoder>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace ledgewise::FolderEntries {

namespace {

FileFacts factsOf(const struct stat &st)
{
    return { qint64(st.st_size), qint64(st.st_mtim.tv_sec) * 1'000'000'000 + st.st_mtim.tv_nsec };
}

// Owns an open directory stream.
struct DirectoryStream {
    explicit DirectoryStream(const QByteArray &path)
        : dir(::opendir(path.constData()))
    { }
    ~DirectoryStream()
    {
        if (dir)
            ::closedir(dir);
    }
    DirectoryStream(const DirectoryStream &) = delete;
    DirectoryStream &operator=(const DirectoryStream &) = delete;
    DIR *dir;
};

} // namespace

std::optional<FileFacts> regularFile(const QByteArray &path)
{
    struct stat st {
    };
    if (::lstat(path.constData(), &st) != 0 || !S_ISREG(st.st_mode))
        return std::nullopt;
    return factsOf(st);
}

bool exists(const QByteArray &path)
{
    struct stat st {
    };
    return ::lstat(path.constData(), &st) == 0;
}

bool forEachRegularFile(
    const QByteArray &folder, const std::function<bool(const QByteArray &name, const FileFacts &facts)> &visit)
{
    DirectoryStream stream(folder);
    if (!stream.dir)
        return false;
    const int dirFd = ::dirfd(stream.dir);
    while (const dirent *entry = ::readdir(stream.dir)) {
        // The type from the directory itself saves a stat of every folder and link.
        if (entry->d_type != DT_REG && entry->d_type != DT_UNKNOWN)
            continue;
        struct stat st {
        };
        if (::fstatat(dirFd, entry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISREG(st.st_mode))
            continue;
        if (!visit(QByteArray(entry->d_name), factsOf(st)))
            break;
    }
    return true;
}

QByteArray childPath(const QByteArray &folder, const QByteArray &name)
{
    return folder.endsWith('/') ? folder + name : folder + '/' + name;
}

QUrl urlOfPath(const QByteArray &path)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(path);
    if (!utf8.hasError())
        return QUrl::fromLocalFile(text);
    return QUrl::fromEncoded(QByteArrayLiteral("file://") + path.toPercentEncoding("/"), QUrl::StrictMode);
}

QByteArray pathOfUrl(const QUrl &url)
{
    if (!url.isLocalFile())
        return {};
    return QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1());
}

QString readableName(const QByteArray &name)
{
    return QString::fromUtf8(name);
}

} // namespace ledgewise::FolderEntries
