// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace ledgewise {

// What goes to a phone: addresses (file: URLs for files, or links), or a text.
struct DeviceShare {
    QStringList urls;
    QString text;

    bool isEmpty() const { return urls.isEmpty() && text.isEmpty(); }
    bool operator==(const DeviceShare &) const = default;
};

// Sends to a paired device the user can reach now.
class DeviceSender
{
public:
    virtual ~DeviceSender() = default;
    // Whether a paired device is reachable now.
    virtual bool canSend() const = 0;
    // False when there is no device to send to; the device answers on its own time.
    virtual bool send(const DeviceShare &share) = 0;
};

} // namespace ledgewise
