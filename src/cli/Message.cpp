// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Message.h"

#include "cli/Text.h"

#include <cstdio>
#include <system_error>

namespace {

constexpr char kProgram[] = "tactus: ";

void WriteLine(std::string const& line) {
    // Nothing can be done about standard error failing.
    (void)std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace

std::string SystemReason(int error) {
    return std::generic_category().message(error);
}

std::string Printable(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    while (!text.empty()) {
        CCharacter const character = FirstCharacter(text);
        if (character.m_bValid && !IsControl(character.m_nCodePoint)) {
            out += text.substr(0, character.m_nBytes);
        } else {
            out += kReplacementCharacter;
        }
        text.remove_prefix(character.m_nBytes);
    }
    return out;
}

void ReportProblem(std::string_view name, std::string_view reason) {
    WriteLine(kProgram + Printable(name) + ": " + Printable(reason) + "\n");
}

void ReportProblem(std::string_view text) {
    WriteLine(kProgram + Printable(text) + "\n");
}
