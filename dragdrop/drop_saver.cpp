// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "dragdrop/drop_saver.h"

#include "dragdrop/unique_name.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace ledgewise {

namespace {

constexpr qint64 chunkSize = qint64(1) << 20;

// Writing past the size limit a process was given (ulimit -f) raises SIGXFSZ, which
// ends the process unless it is ignored. Ignored, the write fails with EFBIG and the
// save ends like any other failed write.
void ignoreFileSizeSignal()
{
    static std::once_flag once;
    std::call_once(once, [] { ::signal(SIGXFSZ, SIG_IGN); });
}

class FileDescriptor
{
public:
    explicit FileDescriptor(int fd)
        : m_fd(fd)
    { }
    ~FileDescriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    int get() const { return m_fd; }
    // Closes now; false when the close reported an error (a late write error).
    bool close() { return ::close(std::exchange(m_fd, -1)) == 0; }

private:
    int m_fd;
};

enum class Step { done, skipped, failed, cancelled };

bool writeAll(int fd, const char *bytes, qint64 size)
{
    while (size > 0) {
        const ssize_t written = ::write(fd, bytes, size_t(size));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes += written;
        size -= written;
    }
    return true;
}

int removeEntry(const char *path, const struct stat *, int, struct FTW *)
{
    ::remove(path);
    return 0;
}

// Removes a temporary, a folder with everything in it; links are removed, never followed.
void removeTree(const QByteArray &path)
{
    ::nftw(path.constData(), removeEntry, 16, FTW_DEPTH | FTW_PHYS);
}

QByteArray childPath(const QByteArray &folder, const char *name)
{
    return folder + '/' + name;
}

// The entries of a folder by name, without "." and "..".
std::vector<QByteArray> entriesOf(const QByteArray &folder)
{
    std::vector<QByteArray> names;
    DIR *dir = ::opendir(folder.constData());
    if (!dir)
        return names;
    while (const dirent *entry = ::readdir(dir)) {
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..")
            names.push_back(name);
    }
    ::closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
}

// One save in progress: what to stop on, how far it got, and the folder being written
// so that a folder saved into a folder inside itself is not copied into its own copy.
struct Work {
    const std::atomic<bool> &cancelled;
    const DropSaver::Progress &progress;
    qint64 done = 0;
    qint64 total = 0;
    dev_t rootDevice = 0;
    ino_t rootInode = 0;
    std::vector<char> buffer = {};

    bool stopped() const { return cancelled.load(std::memory_order_relaxed); }
    void advance(qint64 bytes)
    {
        done += bytes;
        if (progress)
            progress(done, std::max(done, total));
    }
};

// The bytes a copy will write: regular files only, links not followed.
qint64 sizeOf(const Work &work, const QByteArray &path)
{
    struct stat info;
    if (work.stopped() || ::lstat(path.constData(), &info) != 0)
        return 0;
    if (S_ISREG(info.st_mode))
        return info.st_size;
    if (!S_ISDIR(info.st_mode))
        return 0;
    qint64 size = 0;
    for (const QByteArray &name : entriesOf(path))
        size += sizeOf(work, childPath(path, name.constData()));
    return size;
}

// Copies one regular file's bytes to a new file. A file that cannot be opened or read
// is skipped; a file that cannot be written fails the item.
Step copyFile(Work &work, const QByteArray &from, const QByteArray &to)
{
    // Not blocking: a pipe put in the file's place meanwhile must not hang the save.
    FileDescriptor in(::open(from.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY));
    struct stat info;
    if (in.get() < 0 || ::fstat(in.get(), &info) != 0 || !S_ISREG(info.st_mode))
        return Step::skipped;
    FileDescriptor out(::open(to.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600));
    if (out.get() < 0)
        return Step::failed;
    if (work.buffer.empty())
        work.buffer.resize(size_t(chunkSize));

    // The kernel copies between the two files itself while it can: no trip through this
    // process, and a shared-block clone where the file system offers one. Should it
    // refuse (another file system, an old kernel) or stop short, and for files that
    // report no size (those under /proc), the bytes are read and written here, going
    // on from where it stopped; a write error then shows as itself.
    bool inKernel = info.st_size > 0;
    Step step = Step::done;
    for (;;) {
        if (work.stopped()) {
            step = Step::cancelled;
            break;
        }
        if (inKernel) {
            const ssize_t copied = ::copy_file_range(in.get(), nullptr, out.get(), nullptr, size_t(chunkSize), 0);
            if (copied < 0 && errno == EINTR)
                continue;
            if (copied > 0) {
                work.advance(copied);
                continue;
            }
            inKernel = false;
            continue;
        }
        const ssize_t read = ::read(in.get(), work.buffer.data(), work.buffer.size());
        if (read < 0 && errno == EINTR)
            continue;
        if (read < 0) {
            step = Step::skipped;
            break;
        }
        if (read == 0)
            break;
        if (!writeAll(out.get(), work.buffer.data(), read)) {
            step = Step::failed;
            break;
        }
        work.advance(read);
    }
    if (step == Step::done) {
        ::fchmod(out.get(), info.st_mode & 0777);
        if (!out.close())
            step = Step::failed;
    }
    if (step != Step::done)
        ::unlink(to.constData());
    return step;
}

// Copies a file, a symbolic link, or a folder with everything in it, to a path that
// does not exist yet. Pipes, sockets and devices are skipped: reading one could block
// or never end. `root` marks the item's own temporary folder, which records its identity.
Step copyTree(Work &work, const QByteArray &from, const QByteArray &to, bool root)
{
    struct stat info;
    if (::lstat(from.constData(), &info) != 0)
        return Step::skipped;
    if (S_ISLNK(info.st_mode)) {
        std::vector<char> target(size_t(std::max<off_t>(info.st_size, 255)) + 2);
        const ssize_t length = ::readlink(from.constData(), target.data(), target.size() - 1);
        if (length < 0)
            return Step::skipped;
        target[size_t(length)] = '\0';
        return ::symlink(target.data(), to.constData()) == 0 ? Step::done : Step::failed;
    }
    if (S_ISREG(info.st_mode))
        return copyFile(work, from, to);
    if (!S_ISDIR(info.st_mode))
        return Step::skipped;

    // The copy itself, met inside the folder being copied.
    if (!root && info.st_dev == work.rootDevice && info.st_ino == work.rootInode)
        return Step::skipped;
    const std::vector<QByteArray> names = entriesOf(from);
    if (::mkdir(to.constData(), 0777) != 0)
        return Step::failed;
    if (root) {
        struct stat made;
        if (::stat(to.constData(), &made) != 0)
            return Step::failed;
        work.rootDevice = made.st_dev;
        work.rootInode = made.st_ino;
    }
    for (const QByteArray &name : names) {
        if (work.stopped())
            return Step::cancelled;
        const Step step = copyTree(work, childPath(from, name.constData()), childPath(to, name.constData()), false);
        if (step == Step::failed || step == Step::cancelled)
            return step;
    }
    return Step::done;
}

// A hidden name in the folder that nothing has yet.
QByteArray temporaryPath(const QString &folder)
{
    static const char letters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    for (;;) {
        QString name = DropSaver::temporaryPrefix();
        for (int i = 0; i < 6; ++i)
            name += QLatin1Char(letters[QRandomGenerator::global()->bounded(int(sizeof letters - 1))]);
        const QByteArray path = QFile::encodeName(QDir(folder).filePath(name));
        struct stat info;
        if (::lstat(path.constData(), &info) != 0)
            return path;
    }
}

// Gives a finished temporary its free final name without ever replacing anything: a
// name taken meanwhile makes it try the next free one.
bool moveIntoPlace(const QByteArray &temporary, const QString &folder, const QString &name)
{
    struct stat info;
    if (::lstat(temporary.constData(), &info) != 0)
        return false;
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const QByteArray target = QFile::encodeName(uniquePath(folder, name));
        if (::renameat2(AT_FDCWD, temporary.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
            return true;
        if (errno == EEXIST)
            continue;
        if (errno != EINVAL && errno != ENOSYS)
            return false;
        // A file system without the no-replace rename: a hard link fails on a taken
        // name; a folder first reserves its name with an empty folder of its own, which
        // the rename may then replace.
        if (!S_ISDIR(info.st_mode)) {
            if (::link(temporary.constData(), target.constData()) == 0) {
                ::unlink(temporary.constData());
                return true;
            }
        } else if (::mkdir(target.constData(), 0700) == 0) {
            if (::rename(temporary.constData(), target.constData()) == 0)
                return true;
            ::rmdir(target.constData());
            return false;
        }
        if (errno != EEXIST)
            return false;
    }
    return false;
}

Step saveBytes(Work &work, const QByteArray &bytes, const QString &folder, const QString &name)
{
    const QByteArray temporary = temporaryPath(folder);
    FileDescriptor out(::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (out.get() < 0)
        return Step::failed;
    const bool written = writeAll(out.get(), bytes.constData(), bytes.size()) && out.close();
    if (!written || work.stopped() || !moveIntoPlace(temporary, folder, name)) {
        ::unlink(temporary.constData());
        return written && work.stopped() ? Step::cancelled : Step::failed;
    }
    work.advance(bytes.size());
    return Step::done;
}

Step saveFile(Work &work, const QUrl &url, const QString &folder)
{
    const QString name = fileName(url);
    if (name.isEmpty() || name.contains(QLatin1Char('/')))
        return Step::skipped;
    const QByteArray source = QFile::encodeName(QDir::cleanPath(url.toLocalFile()));
    const QByteArray temporary = temporaryPath(folder);
    Step step = copyTree(work, source, temporary, true);
    if (step == Step::done && work.stopped())
        step = Step::cancelled;
    if (step == Step::done && !moveIntoPlace(temporary, folder, name))
        step = Step::failed;
    if (step != Step::done)
        removeTree(temporary);
    return step;
}

QByteArray pngBytes(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (image.isNull() || !buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return {};
    return bytes;
}

} // namespace

DropSaver::DropSaver(DropPayload payload, QString folder)
    : m_payload(std::move(payload))
    , m_folder(std::move(folder))
{ }

QString DropSaver::temporaryPrefix()
{
    return QStringLiteral(".ledgewise-save-");
}

void DropSaver::removeLeftovers(const QString &folder)
{
    const QByteArray path = QFile::encodeName(folder);
    const QByteArray prefix = QFile::encodeName(temporaryPrefix());
    for (const QByteArray &name : entriesOf(path)) {
        if (name.startsWith(prefix))
            removeTree(childPath(path, name.constData()));
    }
}

SaveOutcome DropSaver::run(const std::atomic<bool> &cancelled, const Progress &progress)
{
    ignoreFileSizeSignal();
    struct stat folderInfo;
    if (::stat(QFile::encodeName(m_folder).constData(), &folderInfo) != 0 || !S_ISDIR(folderInfo.st_mode))
        return SaveOutcome::nothing;

    Work work { cancelled, progress };
    std::vector<Step> steps;
    if (!m_payload.fileURLs.isEmpty()) {
        for (const QUrl &url : std::as_const(m_payload.fileURLs))
            work.total += sizeOf(work, QFile::encodeName(QDir::cleanPath(url.toLocalFile())));
        for (const QUrl &url : std::as_const(m_payload.fileURLs)) {
            if (work.stopped()) {
                steps.push_back(Step::cancelled);
                break;
            }
            steps.push_back(saveFile(work, url, m_folder));
        }
    } else {
        QByteArray bytes;
        QString name;
        if (m_payload.image) {
            bytes = pngBytes(*m_payload.image);
            name = QStringLiteral("Dropped.png");
        } else if (m_payload.text) {
            bytes = m_payload.text->toUtf8();
            name = QStringLiteral("Dropped.txt");
        } else if (!m_payload.urls.isEmpty()) {
            // Only the first link: a shortcut file holds one address.
            bytes = "[InternetShortcut]\nURL=" + m_payload.urls.constFirst().toEncoded() + '\n';
            name = QStringLiteral("Dropped.url");
        }
        if (!name.isEmpty() && !(m_payload.image && bytes.isEmpty())) {
            work.total = bytes.size();
            steps.push_back(saveBytes(work, bytes, m_folder, name));
        }
    }

    const auto any = [&steps](Step wanted) { return std::find(steps.begin(), steps.end(), wanted) != steps.end(); };
    if (any(Step::cancelled))
        return SaveOutcome::cancelled;
    if (any(Step::failed))
        return SaveOutcome::failed;
    return any(Step::done) ? SaveOutcome::saved : SaveOutcome::nothing;
}

} // namespace ledgewise
