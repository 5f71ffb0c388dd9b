/* SPDX-FileCopyrightText: 2026 The Tactus authors
 * SPDX-License-Identifier: MIT
 *
 * The functions of <tactus/tactus.h> for C. Texts are UTF-8, paths are bytes; no pointer that
 * is handed in may be null unless it is said so. Fields are only ever added, at the end of a
 * structure. Thread: every function from any thread, several at once; one song from one thread at a
 * time.
 */
#ifndef TACTUS_C_H
#define TACTUS_C_H

#ifdef __cplusplus
#include <cstddef>
#else
#include <stddef.h>
#endif

#ifdef __cplusplus
extern "C" {
#endif

#ifndef TACTUS_API
#define TACTUS_API __attribute__((visibility("default")))
#endif

/* Why a song has no tempo; each as in <tactus/tactus.h>. */
typedef enum {
    TACTUS_PROBLEM_NONE,
    TACTUS_PROBLEM_CANCELLED,
    TACTUS_PROBLEM_CANNOT_OPEN,
    TACTUS_PROBLEM_NOT_A_FILE,
    TACTUS_PROBLEM_EMPTY,
    TACTUS_PROBLEM_CHANGED,
    TACTUS_PROBLEM_NOT_AUDIO,
    TACTUS_PROBLEM_OTHER_KIND,
    TACTUS_PROBLEM_BROKEN,
    TACTUS_PROBLEM_NO_SOUND,
    TACTUS_PROBLEM_PROTECTED,
    TACTUS_PROBLEM_CANNOT_DECODE,
    TACTUS_PROBLEM_BAD_RATE,
    TACTUS_PROBLEM_BAD_SAMPLES,
    TACTUS_PROBLEM_TOO_LONG,
    TACTUS_PROBLEM_NO_MEMORY,
    TACTUS_PROBLEM_NO_BEAT
} tactus_problem;

/* Why a tempo was not stored; likewise. */
typedef enum {
    TACTUS_REFUSAL_NONE,
    TACTUS_REFUSAL_NO_TEMPO,
    TACTUS_REFUSAL_NOT_MP3,
    TACTUS_REFUSAL_NOT_WHOLE,
    TACTUS_REFUSAL_CHANGED,
    TACTUS_REFUSAL_IN_USE,
    TACTUS_REFUSAL_NOT_ALLOWED,
    TACTUS_REFUSAL_TAG,
    TACTUS_REFUSAL_TOO_LARGE,
    TACTUS_REFUSAL_DISK_FULL,
    TACTUS_REFUSAL_NO_MEMORY,
    TACTUS_REFUSAL_DISK
} tactus_refusal;

/* Takes percents from 0 to 100, rising. Returns: 0 to go on, anything else to stop. */
typedef int (*tactus_progress)(int percent, void* user);

/* `values` is null when `count` is 0. */
typedef struct {
    double const* values;
    size_t count;
} tactus_times; /* in seconds */

typedef struct {
    float const* values;
    size_t count;
} tactus_weights; /* without a unit */

/* One reading of the tempo. */
typedef struct {
    double tempo; /* beats a minute */
    int times;    /* the song's tempo times `times` over `over`; both 0: no such ratio */
    int over;
    double score; /* share in the belief; those of a song add up to 1 */
} tactus_candidate;

/* What one hearing brings. */
typedef struct {
    tactus_problem problem;
    int system_error;   /* errno of TACTUS_PROBLEM_CANNOT_OPEN */
    double tempo;       /* beats a minute; 0 for none */
    double heard_tempo; /* the same before the length of a clip under 30 s decided */
    double seconds;     /* length */
    int tonic;          /* pitch class of the key, 0 for C to 11 for B; -1 for none */
    int is_minor;
    int is_damaged; /* not all of it could be heard */
    tactus_times measures;
    tactus_weights energy_accents; /* of the eight half beats of a measure */
    tactus_weights bass_accents;
    double intro_end; /* seconds, as the next */
    double outro_start;
    tactus_times fade_points;
    tactus_times intro_mix_points;
    tactus_times outro_mix_points;
    double fingerprint_start; /* seconds */
    tactus_weights fingerprint;
    double confidence;          /* that there is a steady beat at all, 0 to 1 */
    int beats_per_measure;      /* 3 or 4; 0 without beats */
    double beat_confidence;     /* that these are the beats, not the points between */
    double downbeat_confidence; /* that measures begin where they do */
    tactus_times beats;         /* every one */
    tactus_times downbeats;     /* those that begin a measure */
    int harmony_tonic;          /* as tonic, of the key of chords and melody */
    int harmony_is_minor;
    double harmony_confidence;          /* how likely it is the song's key, 0 to 1 */
    tactus_candidate const* candidates; /* the likeliest first; null when there is none */
    size_t candidate_count;
} tactus_song;

typedef struct {
    char const* title; /* never null; empty for none */
    char const* artist;
    char const* album;
    char const* key;
    char const* tempo_text;
    double tempo; /* 0 for none */
} tactus_tags;

/* Hear a file, or one channel of samples in [-1, 1]. `progress` may be null. The song is the
 * caller's, to be freed by tactus_free_song. Returns: null when there is no memory for it. */
TACTUS_API tactus_song* tactus_analyze_file(char const* path, tactus_progress progress, void* user);
TACTUS_API tactus_song* tactus_analyze_samples(float const* samples, size_t count, unsigned rate,
                                               tactus_progress progress, void* user);
TACTUS_API void tactus_free_song(tactus_song* song); /* may be null */

/* The record of a song, as tactus::toJson makes it. `path` and `tags` may be null. To be freed by
 * tactus_free_text. Returns: null when there is no memory. */
TACTUS_API char* tactus_to_json(tactus_song const* song, char const* path, tactus_tags const* tags);
TACTUS_API void tactus_free_text(char* text); /* may be null */

/* To be freed by tactus_free_tags. Returns: null when there is no memory. */
TACTUS_API tactus_tags* tactus_read_tags(char const* path);
TACTUS_API void tactus_free_tags(tactus_tags* tags); /* may be null */

/* Writes `tempo` into the tag of the MP3 file at `path`, when that is the file that was heard as
 * `song`. */
TACTUS_API tactus_refusal tactus_store_tempo(char const* path, tactus_song const* song,
                                             double tempo);

#ifdef __cplusplus
}
#endif

#endif
