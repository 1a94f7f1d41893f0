// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes found in clipboard.json either decode to a history that encodes and decodes
// to itself, or give nothing; what the panel and the glance show of it never crashes.
#include "modules/clipboard/clipboard_item.h"
#include "modules/clipboard/clipboard_rules.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace ledgewise;
    const auto decoded = decodeHistory(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!decoded)
        return 0;
    const auto again = decodeHistory(encodeHistory(*decoded));
    if (!again || *again != *decoded)
        std::abort();
    for (const ClipboardItem &item : *decoded) {
        (void)ClipboardRules::title(item);
        if (item.imageFileName)
            (void)ClipboardRules::isPlainFileName(*item.imageFileName);
    }
    (void)ClipboardRules::glanceSnippet(*decoded);
    return 0;
}
