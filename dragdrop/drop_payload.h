#pragma once

#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>

#include <optional>

class QMimeData;

namespace ledgewise {

// What a drag onto a surface carries: files, links, a text or an image; exactly one of
// them, read in that order of preference.
struct DropPayload {
    enum class Kind { files, urls, text, image };

    Kind kind = Kind::text;
    QList<QUrl> fileURLs; // non-empty exactly for files
    QList<QUrl> urls;     // non-empty exactly for urls
    std::optional<QString> text;
    std::optional<QImage> image;

    // Reads the drag's data, stopping at the first step that yields something: file
    // URLs, other links, the file manager's copied-files list, an image, plain text
    // (white space counts; empty does not). No value when nothing is usable.
    static std::optional<DropPayload> from(const QMimeData &data);

    // The MIME types a surface accepts drags of, in order of preference. The last,
    // an old link type, is accepted but never read: such a drag is let in and then
    // refused.
    static QStringList registeredTypes();
    static bool offersRegisteredType(const QMimeData &data);

    // What a share sheet would be given: the files, the links, the image or the text.
    QVariantList shareItems() const;

    // The first line of the drop actions: a file's name, "N files", a link's host,
    // "Image", the text, or "Drop".
    QString summary() const;
};

// The last part of a file URL's path: the file's name, or a folder's name whether or
// not the URL ends in a slash ("/" for the root folder).
QString fileName(const QUrl &fileUrl);

} // namespace ledgewise
