// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Program.h"

int main(int argc, char** argv) {
    return RunProgram(argc, argv);
}
