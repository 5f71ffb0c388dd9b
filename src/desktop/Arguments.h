// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

/// What the program was started with, beside the options that Qt takes for itself.
struct CArguments {
    std::vector<std::string> m_vPaths; ///< Files and folders, absolute, as bytes.
    std::string m_sUnknown;            ///< The first option that nobody knows, or empty.
    bool m_bHelp = false;
    bool m_bFactory = false; ///< Neither read settings nor keep any.
    bool m_bVersion = false;
};

/// Reads the arguments behind the program's name. "--" ends the options.
CArguments ReadArguments(int argc, char const* const* argv);
