// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <vector>

#define TACTUS_API __attribute__((visibility("default")))

/// The tempo of music, in five functions: `analyze` for a file and for samples, `toJson`,
/// `readTags` and `storeTempo`. Every answer is a plain value. No function throws, but for
/// `std::bad_alloc`, and none changes the state of the process. Thread: every function from any
/// thread, several at once.
namespace tactus {

/// Why a song has no tempo.
enum class Problem {
    None,
    Cancelled,
    CannotOpen,   // the system said so; `Song::systemError` is its number
    NotAFile,     // a folder, a pipe, a device
    Empty,        // no byte, or no sample
    Changed,      // somebody wrote it, or took it away, while it was read
    NotAudio,     // nothing that is known
    OtherKind,    // known, and not read
    Broken,       // what it says of its sound can't be read
    NoSound,      // read, without any sound in it
    Protected,    // encrypted for those who bought it
    CannotDecode, // its sound can't be decoded, or not mixed down
    BadRate,      // samples a second outside 1,000 to 1,000,000
    BadSamples,   // infinite ones, or ones that are no number
    TooLong,      // more than 2^31 - 1 samples
    NoMemory,
    NoBeat, // heard to its end
};

/// Why a tempo was not stored. The file is then as it was before.
enum class Refusal {
    None,
    NoTempo,    // there is none to store
    NotMp3,     // by its name, by the name that it is a link to, or by its content
    NotWhole,   // damaged, or it ends early: its tempo may be wrong
    Changed,    // no longer the file that was heard
    InUse,      // another program is writing it
    NotAllowed, // may not be written or not be replaced
    Tag,        // its tag can't be read, or not be kept without loss
    TooLarge,   // the file, or its tag
    DiskFull,
    NoMemory,
    Disk, // any other error
};

/// A key: `tonic` is a pitch class, 0 for C to 11 for B.
struct Key {
    int tonic = 0;
    bool isMinor = false;

    bool operator==(Key const&) const = default;
};

/// The key of chords and melody.
struct Harmony {
    Key key;
    std::string plain;       // "Am", as tags have it
    std::string camelot;     // "8A"
    std::string openKey;     // "1m"
    double confidence = 0.0; // how likely it is the song's key, 0 to 1
    double tuning = 0.0;     // cents above A = 440 Hz, from -50 to 50
};

/// One reading of the tempo.
struct Candidate {
    double tempo = 0.0; // beats a minute
    int times = 0;      // the song's tempo times `times` over `over`; both 0: no such ratio
    int over = 0;
    double score = 0.0; // share in the belief; those of a song add up to 1
};

/// What the sound was read from.
struct Source {
    std::string decoder;      // "mp3float", "pcm_s16le"; empty for samples
    unsigned rate = 0;        // samples a second of the file itself
    int channels = 0;         // likewise
    std::int64_t packets = 0; // pieces that the file consists of
    std::int64_t badPackets = 0;
    double promisedSeconds = 0.0; // by the file's header; 0 when that is silent
    double heardSeconds = 0.0;
    bool isDamaged = false; // not all of it could be heard
};

/// One value for each `step` seconds from the start.
struct Envelope {
    double step = 0.0;
    std::vector<float> values; // 0 and above, without a unit
};

/// Where a song can be mixed with the one before it and the one behind it. Units: seconds.
struct MixPoints {
    double introEnd = 0.0;
    double outroStart = 0.0;
    std::vector<double> fade; // at each the song before it is turned down by one more step
    std::vector<double> intro;
    std::vector<double> outro;
};

/// A short excerpt by which the same sound is found again.
struct Fingerprint {
    double start = 0.0;        // seconds
    std::vector<float> values; // without a unit; empty for less than some seconds of sound
};

struct Evidence;

/// What one hearing brings.
struct Song {
    Problem problem = Problem::None;
    int systemError = 0;     // errno of `CannotOpen`
    double tempo = 0.0;      // beats a minute; 0 for none
    double heardTempo = 0.0; // the same before the length of a clip under 30 s decided
    double seconds = 0.0;    // length
    std::optional<Key> key;  // of the bass notes
    Source source;
    double confidence = 0.0;           // that there is a steady beat at all, 0 to 1
    std::vector<Candidate> candidates; // the likeliest first
    std::optional<Harmony> harmony;    // of chords and melody
    int beatsPerMeasure = 0;           // 3 or 4; 0 without beats
    double beatConfidence = 0.0;       // that these are the beats, not the points between
    double downbeatConfidence = 0.0;   // that measures begin where they do
    std::vector<double> beats;         // every one, in seconds
    std::vector<double> downbeats;     // those that begin a measure
    std::vector<double> measures;      // starts that stand out, in seconds
    std::vector<float> energyAccents;  // weights of the eight half beats of a measure
    std::vector<float> bassAccents;    // likewise, below 120 Hz
    MixPoints mixPoints;
    Fingerprint fingerprint;
    Envelope energy; // loudness over all frequencies; empty unless asked for
    Envelope bass;   // peaks below 120 Hz; likewise

    std::shared_ptr<Evidence const> evidence; // which file was heard, for `storeTempo`
};

/// How to analyse.
struct Options {
    /// Takes percents from 0 to 100, rising, on the calling thread.
    std::function<void(int)> progress = {};
    /// Ends the analysis soon, with `Problem::Cancelled`.
    std::stop_token stop = {};
    bool keepEnvelopes = false;
};

/// What a file of any kind says of itself, as UTF-8.
struct Tags {
    std::string title;
    std::string artist;
    std::string album;
    std::string key;
    std::string tempoText;
    double tempo = 0.0; // beats a minute, when the text is a believable tempo; 0 for none
};

/// Hears the file at `path`. The same file gives the same song, bit for bit.
TACTUS_API Song analyze(std::filesystem::path const& path, Options const& options = {});

/// Hears `samples` in [-1, 1], one channel, `rate` of them a second. Other rates than 44100 are
/// resampled in 16 bits.
TACTUS_API Song analyze(std::span<float const> samples, unsigned rate, Options const& options = {});

/// What was heard as one JSON object on one line: the record "tactus-song-1" with all its fields,
/// envelopes if they were kept. `path` and `tags` stand in it as they are given. Empty for a song
/// that no analysis made.
TACTUS_API std::string toJson(Song const& song, std::filesystem::path const& path = {},
                              Tags const& tags = {});

/// Reads the tags of the file at `path`. What isn't there, or can't be read, is empty.
TACTUS_API Tags readTags(std::filesystem::path const& path);

/// Writes the tempo of `song`, or `tempo` when it is given, with two decimals into the tag of the
/// MP3 file at `path`, whatever stood there, when that is the file that was heard.
TACTUS_API Refusal storeTempo(std::filesystem::path const& path, Song const& song,
                              std::optional<double> tempo = {});

} // namespace tactus
