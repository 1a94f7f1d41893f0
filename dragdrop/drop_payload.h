// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QVariantList>

#include <optional>

class QMimeData;

namespace ledgewise {

// A dropped text as the other application offered it, in UTF-8. Converting 50 MB to
// UTF-16 holds the main thread for about 100 ms, so it happens only when the whole text
// is asked for (an action), once per copy of the payload; the summary decodes only the
// start. Reads like an optional text: `if (text)`, `*text`, `text->size()`. One object is
// used by one thread at a time (a save takes its own copy to its worker).
class DroppedText
{
public:
    DroppedText() = default;
    DroppedText(std::nullopt_t) { }
    DroppedText(QString text);
    DroppedText(std::optional<QString> text);
    // Bytes as offered; an empty text is no text.
    static DroppedText fromUtf8(QByteArray utf8);

    bool has_value() const { return m_present; }
    explicit operator bool() const { return m_present; }
    // The whole text, decoded on first use.
    const QString &operator*() const { return value(); }
    const QString *operator->() const { return &value(); }
    const QString &value() const;
    // Whether the whole text has been converted yet.
    bool isDecoded() const { return m_decoded.has_value(); }
    // The text in UTF-8, as offered: no conversion while it has not been decoded.
    QByteArray utf8() const;
    qsizetype utf8Size() const;
    // At most the first `length` characters followed by whatever more, decoded from the
    // start of the bytes only: more than `length` characters when the text is longer.
    QString start(qsizetype length) const;

private:
    bool m_present = false;
    mutable QByteArray m_utf8;
    mutable std::optional<QString> m_decoded;
    // Known from the bytes, or counted once from the text: size checks on a text of
    // many megabytes must not encode it again each time.
    mutable qsizetype m_utf8Size = -1;
};

// What a drag onto a surface carries: files, links, a text or an image; exactly one of
// them, read in that order of preference.
struct DropPayload {
    enum class Kind { files, urls, text, image };

    Kind kind = Kind::text;
    QList<QUrl> fileURLs; // non-empty exactly for files
    QList<QUrl> urls; // non-empty exactly for urls
    DroppedText text;
    std::optional<QImage> image;
    // The other application marked what it offered as a password manager's secret:
    // copied back, it carries the same mark, so clipboard histories leave it out.
    bool secret = false;
    // An image read without decoding (`image` is then a null image): the bytes as
    // offered, decoded once, when the drag is dropped.
    QByteArray encodedImage = {};

    // How an image offered by a drag is read: decoded, or only taken as it was offered
    // (while a drag passes over a surface, where decoding every entry would be waste).
    enum class ImageReading { decode, defer };

    // Reads the drag's data, stopping at the first step that yields something: file
    // URLs, other links, the file manager's copied-files list, an image, plain text
    // (white space counts; empty does not). No value when nothing is usable. Only
    // absolute local file URLs are files; relative ones and those on another host are
    // left out.
    static std::optional<DropPayload> from(const QMimeData &data, ImageReading reading = ImageReading::decode);

    // Decodes an image read with ImageReading::defer; false when it does not decode.
    // Any other payload is left as it is.
    bool decodeImage();
    // How many times an image offered by a drag was decoded since the start.
    static int imageDecodeCount();

    // The MIME types a surface accepts drags of, in order of preference. The last,
    // an old link type, is accepted but never read: such a drag is let in and then
    // refused.
    static QStringList registeredTypes();
    static bool offersRegisteredType(const QMimeData &data);

private:
    static std::optional<DropPayload> read(const QMimeData &data, ImageReading reading);

public:
    // What a share sheet would be given: the files, the links, the image or the text.
    QVariantList shareItems() const;

    // The first line of the drop actions: a file's name, "N files", a link's host,
    // "Image", the text, or "Drop". A name shows on one line (line breaks as spaces)
    // and a very long one without its middle; a text beyond what two lines can show
    // is cut, with an ellipsis.
    QString summary() const;
};

// Whether a URL names a file on this machine by an absolute path: "file:" with no host
// (or "localhost") and a path from the root. "file:.", "file:foo" and
// "file://otherhost/x" are not.
bool isAbsoluteLocalFile(const QUrl &url);

// The last part of a file URL's path: the file's name, or a folder's name whether or
// not the URL ends in a slash ("/" for the root folder).
QString fileName(const QUrl &fileUrl);

} // namespace ledgewise
