// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// Any bytes stored under the preferences key either decode to a record that encodes
// and decodes to itself, or give nothing; never a crash.
#include "app/preferences_codec.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto decoded
        = ledgewise::decodePreferences(QByteArrayView(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!decoded)
        return 0;
    const auto encoded = ledgewise::encodePreferences(*decoded);
    if (!encoded)
        return 0; // a number JSON cannot hold can only come from outside the decoder
    const auto again = ledgewise::decodePreferences(*encoded);
    if (!again || !(*again == *decoded))
        std::abort();
    return 0;
}
