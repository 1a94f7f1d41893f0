// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
// A stored preferences record, however odd its numbers, laid out on two displays and
// turned into window rectangles: never undefined behaviour (the build stops on a double
// out of an int's range), and a window is never of negative size. Input that is not a
// record is read as raw doubles for the size and offsets, so NaN and infinities, which
// JSON cannot spell, are tried too.
#include "app/preferences_codec.h"
#include "surfaces/geometry.h"
#include "surfaces/notch_layout.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

ledgewise::DisplaySnapshot plainDisplay()
{
    ledgewise::DisplaySnapshot d;
    d.frame = { 0, 0, 1920, 1080 };
    d.visibleFrame = { 0, 0, 1920, 1056 };
    d.menuBarHeight = 24;
    return d;
}

// Beside the primary display, with a notch and an odd scale.
ledgewise::DisplaySnapshot notchedDisplay()
{
    ledgewise::DisplaySnapshot d;
    d.frame = { 1920, 98.5, 1512, 981.5 };
    d.visibleFrame = { 1920, 98.5, 1512, 949.5 };
    d.auxiliaryTopLeft = { 1920, 1048, 656, 32 };
    d.auxiliaryTopRight = { 2776, 1048, 656, 32 };
    d.safeAreaTop = 32;
    d.menuBarHeight = 32;
    return d;
}

ledgewise::Preferences preferencesFrom(const uint8_t *data, size_t size)
{
    using ledgewise::Preferences;
    if (auto decoded
        = ledgewise::decodePreferences(QByteArrayView(reinterpret_cast<const char *>(data), qsizetype(size))))
        return *decoded;
    Preferences p;
    double *fields[] = { &p.width, &p.height, &p.offsetFromEdge, &p.offsetFromNotch, &p.cornerRadius };
    for (size_t i = 0; i < std::size(fields) && (i + 1) * sizeof(double) <= size; ++i)
        std::memcpy(fields[i], data + i * sizeof(double), sizeof(double));
    if (size > std::size(fields) * sizeof(double))
        p.style = ledgewise::NotchStyle(data[std::size(fields) * sizeof(double)] % 3);
    return p;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace ledgewise;
    const Preferences preferences = preferencesFrom(data, size);
    for (const DisplaySnapshot &display : { plainDisplay(), notchedDisplay() }) {
        for (const NotchSide side : { NotchSide::left, NotchSide::right }) {
            for (const NotchPresentation presentation : { NotchPresentation::sleeping, NotchPresentation::glance,
                     NotchPresentation::active, NotchPresentation::expanded }) {
                const Rect frame = NotchLayout::frame(side, presentation, preferences, display);
                const QRect window = toWindowRect(frame, 1080);
                if (window.width() < 0 || window.height() < 0)
                    std::abort();
                (void)NotchLayout::cornerRadius(preferences.style, frame.height, preferences);
            }
        }
    }
    return 0;
}
