// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Interrupt.h"

#include "cli/ExitCode.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace {

CCancelFlag g_interrupt;
std::atomic<int> g_nSignal{0};

extern "C" void KeepRequest(int signal) {
    g_nSignal.store(signal);
    g_interrupt.Set();
}

void Listen(int signal) {
    struct sigaction action {};
    action.sa_handler = KeepRequest;
    // Reads and waits are not taken up again: whoever waits is to look at the request.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    (void)sigaction(signal, &action, nullptr);
}

} // namespace

void CInterrupt::Install() {
    Listen(SIGINT);
    Listen(SIGTERM);
    struct sigaction hangUp {};
    if (sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN) {
        Listen(SIGHUP);
    }
    (void)std::signal(SIGPIPE, SIG_IGN);
    // A limit on the length of files is to make a write fail, not to end the program in it.
    (void)std::signal(SIGXFSZ, SIG_IGN);
}

CCancelFlag const& CInterrupt::Flag() {
    return g_interrupt;
}

int CInterrupt::ExitCode() {
    return kExitSignalBase + g_nSignal.load();
}

void CInterrupt::EndByBrokenPipe() {
    (void)std::signal(SIGPIPE, SIG_DFL);
    (void)std::raise(SIGPIPE);
    std::_Exit(kExitSignalBase + SIGPIPE);
}
