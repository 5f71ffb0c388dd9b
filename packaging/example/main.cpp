// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Prints the tempo of one file.

#include <cstdio>
#include <tactus/tactus.h>

int main(int argc, char** argv) {
    tactus::Song const song = tactus::analyze(argc == 2 ? argv[1] : "");
    std::printf("%.2f\n", song.tempo);
    return song.problem == tactus::Problem::None ? 0 : 1;
}
