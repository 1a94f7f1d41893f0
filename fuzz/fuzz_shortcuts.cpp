// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Any text stored under a shortcut key either decodes to a shortcut that reads back
// the same, or to no shortcut; its readable form never crashes.
#include "shortcuts/presentable_description.h"
#include "shortcuts/shortcut.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace ledgewise::GlobalShortcuts;
    const auto shortcut = decodeShortcut(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!shortcut)
        return 0;
    if (decodeShortcut(encodeShortcut(*shortcut)) != shortcut)
        std::abort();
    (void)presentableDescription(*shortcut, UsKeyboardLayout());
    return 0;
}
