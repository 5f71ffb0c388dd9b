// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

/// The arguments behind the program's name, in reverse, as the parser wants them. What follows "--"
/// is an operand whatever it looks like, and words that the parser would take apart ("[a]", "++")
/// are none to it: both are shielded.
std::vector<std::string> ReversedArguments(int argc, char const* const* argv);

/// Takes the shield off every value that any option or operand of `app` and its commands receives.
void UnshieldValues(CLI::App& app);

/// `argument` as it was given.
std::string Unshielded(std::string argument);
