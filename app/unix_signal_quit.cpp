// SPDX-FileCopyrightText: 2026 Ledgewise developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/unix_signal_quit.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace ledgewise {

namespace {

int signalPipe[2] = { -1, -1 };

void onSignal(int signalNumber)
{
    const char byte = static_cast<char>(signalNumber);
    [[maybe_unused]] const auto written = ::write(signalPipe[0], &byte, 1);
}

} // namespace

UnixSignalQuit::UnixSignalQuit(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalPipe) != 0)
        return;
    m_notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &UnixSignalQuit::drain);

    struct sigaction action = {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

UnixSignalQuit::~UnixSignalQuit()
{
    ::signal(SIGINT, SIG_DFL);
    ::signal(SIGTERM, SIG_DFL);
    for (int &fd : signalPipe) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

void UnixSignalQuit::drain()
{
    char byte = 0;
    while (::read(signalPipe[1], &byte, 1) == 1) {
        emit received(byte);
        QCoreApplication::quit();
    }
}

} // namespace ledgewise
