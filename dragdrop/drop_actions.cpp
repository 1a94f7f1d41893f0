#include "dragdrop/drop_actions.h"

#include "dragdrop/unique_name.h"
#include "platform/clipboard/pasteboard.h"
#include "platform/xdg/url_opener.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>

namespace ledgewise::DropActions {

namespace {

// Writes bytes to a file that must not exist yet: an existing file is never replaced.
void writeNewFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return;
    if (file.write(bytes) != bytes.size()) {
        file.close();
        file.remove(); // a half-written file is worse than none
    }
}

// Copies a file, a symbolic link, or a folder with everything in it, to a path that
// does not exist yet. Anything else (pipes, sockets, devices) is skipped: reading one
// could block the interface or never end. `copyRoot` is the whole copy's own folder,
// never copied into itself when a folder is saved into the Downloads folder inside it.
void copyItem(const QFileInfo &source, const QString &target, const QString &copyRoot)
{
    if (source.isSymLink()) {
        QFile::link(source.symLinkTarget(), target);
        return;
    }
    if (source.isDir()) {
        if (source.canonicalFilePath() == copyRoot)
            return;
        const QFileInfoList children = QDir(source.filePath())
            .entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
        if (!QDir().mkdir(target))
            return;
        const QString root = copyRoot.isEmpty() ? QFileInfo(target).canonicalFilePath() : copyRoot;
        for (const QFileInfo &child : children)
            copyItem(child, QDir(target).filePath(child.fileName()), root);
        return;
    }
    if (source.isFile())
        QFile::copy(source.filePath(), target);
}

QByteArray pngBytes(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG"))
        return {};
    return bytes;
}

} // namespace

void perform(DropAction action, const DropPayload &payload, Context &context)
{
    switch (action) {
    case DropAction::copy:
        copy(payload, context.pasteboard);
        return;
    case DropAction::save:
        save(payload, context.downloadsFolder);
        return;
    case DropAction::open:
        open(payload, context.opener);
        return;
    case DropAction::share:
    case DropAction::airDrop:
        // Nothing to hand the items to on this desktop: the action ends here, quietly.
        return;
    }
}

void copy(const DropPayload &payload, Pasteboard &pasteboard)
{
    pasteboard.clearContents();
    auto data = std::make_unique<QMimeData>();
    if (!payload.fileURLs.isEmpty()) {
        data->setUrls(payload.fileURLs);
        // File managers paste files from their own list, which says copy, not move.
        QByteArray copied = "copy";
        for (const QUrl &url : payload.fileURLs)
            copied += '\n' + url.toEncoded();
        data->setData(QStringLiteral("x-special/gnome-copied-files"), copied);
    } else if (!payload.urls.isEmpty()) {
        data->setUrls(payload.urls);
        QStringList lines;
        for (const QUrl &url : payload.urls)
            lines << url.toString();
        data->setText(lines.join(QLatin1Char('\n')));
    } else if (payload.image) {
        data->setImageData(*payload.image);
    } else if (payload.text) {
        data->setText(*payload.text);
    } else {
        return;
    }
    pasteboard.setContents(data.release());
}

void save(const DropPayload &payload, const QString &downloadsFolder)
{
    if (!QFileInfo(downloadsFolder).isDir())
        return;
    if (!payload.fileURLs.isEmpty()) {
        for (const QUrl &url : payload.fileURLs) {
            const QFileInfo source(QDir::cleanPath(url.toLocalFile()));
            const QString name = fileName(url);
            if (name.isEmpty() || name.contains(QLatin1Char('/')) || !(source.exists() || source.isSymLink()))
                continue;
            copyItem(source, uniquePath(downloadsFolder, name), QString());
        }
    } else if (payload.image) {
        const QByteArray png = pngBytes(*payload.image);
        if (!png.isEmpty())
            writeNewFile(uniquePath(downloadsFolder, QStringLiteral("Dropped.png")), png);
    } else if (payload.text) {
        writeNewFile(uniquePath(downloadsFolder, QStringLiteral("Dropped.txt")), payload.text->toUtf8());
    } else if (!payload.urls.isEmpty()) {
        // Only the first link: a shortcut file holds one address.
        const QByteArray shortcut = "[InternetShortcut]\nURL=" + payload.urls.constFirst().toEncoded() + '\n';
        writeNewFile(uniquePath(downloadsFolder, QStringLiteral("Dropped.url")), shortcut);
    }
}

void open(const DropPayload &payload, UrlOpener &opener)
{
    if (!payload.fileURLs.isEmpty()) {
        for (const QUrl &url : payload.fileURLs)
            opener.open(url);
    } else if (!payload.urls.isEmpty()) {
        for (const QUrl &url : payload.urls)
            opener.open(url);
    } else if (payload.text) {
        const QUrl url(*payload.text, QUrl::StrictMode);
        if (url.isValid() && !url.scheme().isEmpty())
            opener.open(url);
    }
}

bool shareAvailable()
{
    return false;
}

bool airDropAvailable()
{
    return false;
}

} // namespace ledgewise::DropActions
