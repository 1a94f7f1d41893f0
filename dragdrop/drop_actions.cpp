#include "dragdrop/drop_actions.h"

#include "dragdrop/unique_name.h"
#include "platform/clipboard/pasteboard.h"
#include "platform/xdg/url_opener.h"

#include <QBuffer>
#include <QDir>
#include <QDirIterator>
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

// Copies a file, or a folder with everything in it, to a path that does not exist yet.
void copyItem(const QString &source, const QString &target)
{
    const QFileInfo info(source);
    if (info.isDir() && !info.isSymLink()) {
        if (!QDir().mkdir(target))
            return;
        QDirIterator it(source, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
        while (it.hasNext()) {
            const QString entry = it.next();
            copyItem(entry, QDir(target).filePath(it.fileName()));
        }
        return;
    }
    if (info.isSymLink()) {
        QFile::link(info.symLinkTarget(), target);
        return;
    }
    QFile::copy(source, target);
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
            const QString source = url.toLocalFile();
            const QString name = QFileInfo(source).fileName();
            if (name.isEmpty() || !QFileInfo::exists(source))
                continue;
            copyItem(source, uniquePath(downloadsFolder, name));
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
