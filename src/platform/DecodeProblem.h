// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/FileIdentity.h"

#include <cstdint>
#include <string>

/// Why a file could not be decoded. The words for a person are made by the programs.
enum class EDecodeProblem {
    None,
    Cancelled,
    SystemError, // the system said so, with a number
    IsFolder,
    NotRegular, // a pipe, a socket, a device
    Empty,
    Vanished,          // while it was read
    Changed,           // while it was read
    NotAudio,          // nothing that is known
    OtherKind,         // a kind that is known and not read, such as Musepack
    FreeFormat,        // MPEG audio that doesn't tell its bit rate
    BrokenContainer,   // a kind that is read, but not what it says of itself
    NoAudio,           // of a kind that is read, without any sound
    Protected,         // encrypted for those who bought it
    UnknownCodec,      // of a kind that is read, with sound that has no decoder here
    Undecodable,       // the decoder refuses what the file says of its sound
    Unmixable,         // the sound can't be made mono
    BadRate,           // a sample rate outside what can be resampled
    TooLong,           // more samples than can be counted
    NoMemory,          // for decoding it
    NoAudioForTooLong, // it kept the decoder busy without giving a sample
};

// Derived: how many there are, from the last one.
inline constexpr int kDecodeProblems = static_cast<int>(EDecodeProblem::NoAudioForTooLong) + 1;

/// What read a file: the kind that its bytes are, whatever its name.
enum class EContainer {
    Unknown,
    MpegAudio,
    AdtsAac,
    Mp4, // and QuickTime
    Wav, // and RF64
    Wave64,
    Aiff,
    Caf,
    Flac,
    Ogg,
    Asf, // Windows Media
    Au,
    Matroska, // and WebM
    MonkeysAudio,
    TrueAudio,
    WavPack,
};

/// What says how much of a file's start is no music.
enum class EStartNote {
    None,
    EncoderTag,   // the encoder's tag in the first frame of an MP3
    TrackTable,   // the edit list of an MP4 file, or the encoder's note "iTunSMPB"
    StreamHeader, // the header of the sound itself, as of Opus
};

/// What there is to tell of one decode, be it that it worked or not.
struct CDecodeReport {
    EDecodeProblem m_problem = EDecodeProblem::None;
    int m_nError = 0;      // errno of `SystemError`
    std::string m_sDetail; // what the decoding library said last; for those who look for the cause

    // What could not be decoded although the rest was.
    std::int64_t m_nPackets = 0;
    std::int64_t m_nBadPackets = 0;
    bool m_bBreaksOff = false; // ends in the middle of a frame

    // Length by the file's own header, 0 when that is silent, and length of what is there. Both
    // count what an encoder added at the ends.
    double m_dPromisedSeconds = 0.0;
    double m_dHeardSeconds = 0.0;

    EContainer m_container = EContainer::Unknown;
    std::string m_sCodec;          // how the sound is coded: "mp3", "aac", "pcm_s16le"
    std::string m_sDecoder;        // the decoding library's name for it: "mp3float", "pcm_s16le"
    std::uint32_t m_nFileRate = 0; // samples per second of the file itself
    int m_nChannels = 0;

    // Frames at the file's rate that an encoder put before the music. They are left out: the first
    // sample is the one behind them. What no note tells of stays in, so 0 doesn't mean none.
    std::int64_t m_nSkippedFrames = 0;
    EStartNote m_startNote = EStartNote::None;
    CFileIdentity m_identity; // of the file that was opened; all 0 when none was

    bool operator==(CDecodeReport const&) const = default;

    /// True when less is there than the header promises, by more than encoders differ.
    [[nodiscard]] bool EndsEarly() const {
        constexpr double kUsualShare = 0.98;     // Fixed: tags are written down to here.
        constexpr double kUsualDifference = 0.1; // Fixed: some packets of any kind.
        return m_dHeardSeconds < kUsualShare * m_dPromisedSeconds &&
               m_dHeardSeconds < m_dPromisedSeconds - kUsualDifference;
    }

    /// True when what was decoded isn't the whole song.
    [[nodiscard]] bool IsDamaged() const {
        return m_nBadPackets > 0 || m_bBreaksOff || EndsEarly();
    }
};
