/* SPDX-FileCopyrightText: 2026 The Tactus authors
 * SPDX-License-Identifier: MIT
 *
 * Prints the tempo of one file.
 */
#include <stdio.h>
#include <tactus/tactus_c.h>

int main(int argc, char** argv) {
    tactus_song* song = tactus_analyze_file(argc == 2 ? argv[1] : "", NULL, NULL);
    if (song == NULL) {
        return 1;
    }
    int const failed = song->problem != TACTUS_PROBLEM_NONE;
    printf("%.2f\n", song->tempo);
    tactus_free_song(song);
    return failed;
}
