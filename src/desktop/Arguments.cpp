// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Arguments.h"

#include "desktop/Paths.h"

#include <string_view>

CArguments ReadArguments(int argc, char const* const* argv) {
    CArguments arguments;
    bool isPath = false;
    for (int i = 1; i < argc; ++i) {
        std::string_view const argument = argv[i];
        if (isPath || !argument.starts_with('-')) {
            arguments.m_vPaths.push_back(ArgumentPath(std::string(argument)));
        } else if (argument == "--") {
            isPath = true;
        } else if (argument == "--help" || argument == "-h") {
            arguments.m_bHelp = true;
        } else if (argument == "--version") {
            arguments.m_bVersion = true;
        } else if (argument == "--factory") {
            arguments.m_bFactory = true;
        } else if (arguments.m_sUnknown.empty()) {
            arguments.m_sUnknown = argument;
        }
    }
    return arguments;
}
