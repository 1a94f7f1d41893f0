// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace ledgewise {

// A notch's size in points (device-independent pixels).
struct NotchSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const NotchSize &, const NotchSize &) = default;
};

// LEDGEWISE_NOTCH=WIDTHxHEIGHT, e.g. "200x32": positive numbers only; anything else
// is no override.
std::optional<NotchSize> parseNotchOverride(const QByteArray &value);

// A real notch on Apple laptops running Linux. The display driver shows the rows
// beside the notch only when its show_notch parameter is on; the notch's height in
// pixels is a device-tree property, its width is known per model. `root` is "/" on a
// real machine and a fake tree in tests. Sizes are in pixels; the caller divides by
// the screen's device pixel ratio.
class NotchDetector
{
public:
    explicit NotchDetector(QString root = QStringLiteral("/"));
    std::optional<NotchSize> detectPixels() const;

    // The notch width in pixels for a device-tree model name.
    static double widthForModel(const QString &model);

private:
    bool notchRowsShown() const;
    std::optional<double> notchHeight() const;
    QString model() const;

    QString m_root;
};

} // namespace ledgewise
