// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What another application puts on the clipboard, as MIME parts (see mime_parts.h):
// classified against a small history, and the text rules applied to what it offers.
// Never a crash; a stored text never passes its byte limit by more than the note.
#include "fuzz/mime_parts.h"
#include "modules/clipboard/clipboard_rules.h"
#include "platform/clipboard/pasteboard.h"

#include <QCoreApplication>
#include <QMimeData>

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static QCoreApplication application(*argc, *argv);
    return 0;
}

namespace {

// A clipboard that offers fixed parts, as the other application would.
class OfferedClipboard final : public ledgewise::Pasteboard
{
public:
    explicit OfferedClipboard(ledgewise::fuzzing::MimeParts parts)
        : m_parts(std::move(parts))
    { }
    qint64 changeCount() const override { return 1; }
    bool announcesChanges() const override { return true; }
    QStringList types() const override
    {
        QStringList names;
        for (const auto &part : m_parts)
            names << part.first;
        return names;
    }
    QByteArray data(const QString &mimeType) const override
    {
        for (const auto &part : m_parts) {
            if (part.first == mimeType)
                return part.second;
        }
        return {};
    }
    void clearContents() override { }
    void setContents(QMimeData *contents) override { delete contents; }

private:
    ledgewise::fuzzing::MimeParts m_parts;
};

ledgewise::ClipboardItem entry(ledgewise::ClipboardKind kind, const QString &value)
{
    ledgewise::ClipboardItem item;
    item.id = QUuid::createUuid();
    item.kind = kind;
    if (kind == ledgewise::ClipboardKind::url)
        item.url = value;
    else
        item.text = value;
    return item;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace ledgewise;
    const OfferedClipboard clipboard(fuzzing::mimeParts(data, size));
    const QString offeredText = clipboard.text();
    // A history whose newest entries repeat what is offered, and one that does not.
    const QList<QList<ClipboardItem>> histories = {
        {},
        { entry(ClipboardKind::text, offeredText), entry(ClipboardKind::url, offeredText.trimmed()) },
    };
    (void)ClipboardRules::isSecret(clipboard);
    for (const auto &history : histories) {
        const Capture capture = ClipboardRules::classify(clipboard, history);
        if (capture.kind == Capture::Kind::text || capture.kind == Capture::Kind::link) {
            const QString stored = ClipboardRules::storedText(capture.value);
            const qsizetype bytes = ClipboardRules::utf8Size(stored, ClipboardRules::maximumTextBytes * 2);
            if (bytes
                > ClipboardRules::maximumTextBytes + ClipboardRules::cutNote(capture.value.size() * 4).toUtf8().size())
                std::abort();
            QList<ClipboardItem> items = history;
            items.prepend(
                entry(capture.kind == Capture::Kind::link ? ClipboardKind::url : ClipboardKind::text, stored));
            (void)ClipboardRules::glanceSnippet(items);
            (void)ClipboardRules::title(items.first());
        }
        if (capture.kind == Capture::Kind::image)
            (void)ClipboardRules::pngData(capture.imageData);
    }
    (void)ClipboardRules::isPlainFileName(offeredText);
    (void)ClipboardRules::isLeftoverSaveFile(offeredText, QStringLiteral("clipboard.json"));
    return 0;
}
