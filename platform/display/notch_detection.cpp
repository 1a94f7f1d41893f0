// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/display/notch_detection.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QtEndian>

namespace ledgewise {

std::optional<NotchSize> parseNotchOverride(const QByteArray &value)
{
    static const QRegularExpression pattern(QStringLiteral("^\\s*(\\d+(?:\\.\\d+)?)[xX](\\d+(?:\\.\\d+)?)\\s*$"));
    const auto match = pattern.match(QString::fromLatin1(value));
    if (!match.hasMatch())
        return std::nullopt;
    const double width = match.captured(1).toDouble();
    const double height = match.captured(2).toDouble();
    if (width <= 0 || height <= 0)
        return std::nullopt;
    return NotchSize { width, height };
}

NotchDetector::NotchDetector(QString root)
    : m_root(std::move(root))
{ }

std::optional<NotchSize> NotchDetector::detectPixels() const
{
    if (!notchRowsShown())
        return std::nullopt;
    const auto height = notchHeight();
    if (!height || *height <= 0)
        return std::nullopt;
    return NotchSize { widthForModel(model()), *height };
}

double NotchDetector::widthForModel(const QString &model)
{
    // The notch is about 400 pixels wide on the 13-inch to 16-inch panels of the
    // notched generations; the 15-inch Air's is a little wider. The user can still
    // correct it with LEDGEWISE_NOTCH.
    if (model.contains(QLatin1String("MacBook Air")) && model.contains(QLatin1String("15-inch")))
        return 420;
    return 400;
}

bool NotchDetector::notchRowsShown() const
{
    // Current kernels name the driver appledrm; older ones apple_dcp.
    for (const char *driver : { "appledrm", "apple_dcp" }) {
        QFile parameter(m_root + QStringLiteral("/sys/module/%1/parameters/show_notch").arg(QLatin1String(driver)));
        if (!parameter.open(QIODevice::ReadOnly))
            continue;
        const QByteArray value = parameter.readAll().trimmed();
        return value == "Y" || value == "1";
    }
    return false;
}

std::optional<double> NotchDetector::notchHeight() const
{
    // The property sits on the display coprocessor's node; its path differs between
    // machines, so look for it by name.
    QDirIterator it(m_root + QStringLiteral("/proc/device-tree"), { QStringLiteral("apple,notch-height") }, QDir::Files,
        QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile property(it.next());
        if (!property.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = property.read(4);
        if (bytes.size() == 4)
            return double(qFromBigEndian<quint32>(bytes.constData()));
    }
    return std::nullopt;
}

QString NotchDetector::model() const
{
    QFile file(m_root + QStringLiteral("/proc/device-tree/model"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray text = file.readAll();
    // Device-tree strings end in NUL.
    while (text.endsWith('\0'))
        text.chop(1);
    return QString::fromUtf8(text);
}

} // namespace ledgewise
