// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/LastMessage.h"

#include <array>
#include <cstdio>

namespace {

constexpr std::size_t kMessageBytes = 160; // Fixed: longer ones are cut.
thread_local std::array<char, kMessageBytes> t_message{};

} // namespace

void KeepMessage(char const* format, va_list arguments) {
    (void)std::vsnprintf(t_message.data(), t_message.size(), format, arguments);
}

void ForgetMessage() {
    t_message.front() = '\0';
}

std::string LastMessage() {
    std::string message = t_message.data();
    message.erase(message.find_last_not_of(" .\n") + 1);
    return message;
}
