// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusMessage>
#include <QObject>

namespace ledgewise {

// Whether the desktop asks for less motion: its "enable animations" setting, read
// through the settings portal and followed when it changes. Without a portal,
// animations stay on.
class MotionPreference : public QObject
{
    Q_OBJECT

public:
    explicit MotionPreference(QObject *parent = nullptr);

    bool reduceMotion() const { return m_reduceMotion; }

signals:
    void changed();

private slots:
    void settingChanged(const QDBusMessage &message);

private:
    void apply(const QVariant &enableAnimations);

    bool m_reduceMotion = false;
};

} // namespace ledgewise
