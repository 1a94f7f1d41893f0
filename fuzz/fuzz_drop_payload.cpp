// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// What another application offers in a drag, as MIME parts (see mime_parts.h): read
// with and without decoding images, never a crash, and only absolute local files are
// ever taken as files.
#include "dragdrop/drop_payload.h"
#include "fuzz/mime_parts.h"

#include <QCoreApplication>
#include <QMimeData>

#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    // Image format plugins are found through the application.
    static QCoreApplication application(*argc, *argv);
    return 0;
}

namespace {

void check(const ledgewise::DropPayload &payload)
{
    using Kind = ledgewise::DropPayload::Kind;
    if ((payload.kind == Kind::files) != !payload.fileURLs.isEmpty())
        std::abort();
    if ((payload.kind == Kind::urls) != !payload.urls.isEmpty())
        std::abort();
    for (const QUrl &url : payload.fileURLs) {
        if (!ledgewise::isAbsoluteLocalFile(url))
            std::abort();
        (void)ledgewise::fileName(url);
    }
    (void)payload.summary();
    (void)payload.shareItems();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using ledgewise::DropPayload;
    QMimeData mime;
    for (const auto &[type, bytes] : ledgewise::fuzzing::mimeParts(data, size))
        mime.setData(type, bytes);
    (void)DropPayload::offersRegisteredType(mime);
    if (auto payload = DropPayload::from(mime, DropPayload::ImageReading::defer)) {
        check(*payload);
        payload->decodeImage();
        check(*payload);
    }
    if (const auto payload = DropPayload::from(mime, DropPayload::ImageReading::decode))
        check(*payload);
    return 0;
}
