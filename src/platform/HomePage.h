// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// The product's page: the address given when the program was built, otherwise the guide that came
/// with this program.
/// Returns: a URL in ASCII.
/// Thread: any.
std::string HomePage();

/// The guide of a program in `programFolder`, installed or just built. Where there is none, the
/// place where the guide would be installed.
/// Returns: a file URL in ASCII.
std::string GuideAddress(std::string const& programFolder);
