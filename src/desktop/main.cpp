// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/DesktopApp.h"

int main(int argc, char** argv) {
    return RunDesktop(argc, argv);
}
