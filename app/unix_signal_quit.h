// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QSocketNotifier;

namespace ledgewise {

// Turns SIGINT and SIGTERM into an orderly QCoreApplication::quit(), so the event loop
// unwinds and everything is saved. A signal handler may do almost nothing, so it only
// writes a byte into a socket pair; the notifier picks it up on the main thread.
class UnixSignalQuit : public QObject
{
    Q_OBJECT

public:
    explicit UnixSignalQuit(QObject *parent = nullptr);
    ~UnixSignalQuit() override;

signals:
    void received(int signalNumber);

private:
    void drain();

    QSocketNotifier *m_notifier = nullptr;
};

} // namespace ledgewise
