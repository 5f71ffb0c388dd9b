// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/DesktopApp.h"
#include "platform/AudioSetup.h"

int main(int argc, char** argv) {
    SetUpAudio();
    return RunDesktop(argc, argv);
}
