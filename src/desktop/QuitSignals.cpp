// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The handler may do next to nothing: it writes one byte into a pipe that the event loop watches.

#include "desktop/QuitSignals.h"

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array<int, 3> kSignals{SIGTERM, SIGINT, SIGHUP};
int g_nPipe = -1; // Written before the handlers are there, read by them.

void OnSignal(int) {
    int const error = errno;
    char const byte = 0;
    [[maybe_unused]] auto const written = write(g_nPipe, &byte, 1);
    errno = error;
}

void SetHandler(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (int const signal : kSignals) {
        sigaction(signal, &action, nullptr);
    }
}

} // namespace

CQuitSignals::CQuitSignals(QObject* parent) : QObject(parent) {
    if (pipe2(m_vPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return;
    }
    g_nPipe = m_vPipe[1];
    auto* notifier = new QSocketNotifier(m_vPipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (read(m_vPipe[0], &byte, 1) > 0) {
        }
        emit quitRequested();
    });
    SetHandler(OnSignal);
}

CQuitSignals::~CQuitSignals() {
    if (m_vPipe[0] >= 0) {
        SetHandler(SIG_DFL);
        close(m_vPipe[0]);
        close(m_vPipe[1]);
    }
}
