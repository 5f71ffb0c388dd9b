// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/Harmony.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

/// By what one song is compared with others. Levels and values stay the caller's.
/// Units: seconds from the song's first sample.
struct CSongMarks {
    std::span<std::uint8_t const> m_opening; // levels as `COpeningShape` takes them
    std::span<float const> m_excerpt;        // every fourth sample of a lively spot, at 44100 Hz
    double m_dExcerptSeconds = 0.0;          // where that begins
    double m_dSeconds = 0.0;                 // how long the song lasts
    double m_dOutroSeconds = 0.0;            // where its outro begins
    EKeyMode m_eMode = EKeyMode::None;       // its key by chords and melody
    std::int32_t m_nTonic = 0;
};

/// One song of a group.
struct CSameSong {
    std::size_t m_nSong = 0;       // its place in the list
    double m_dOffsetSeconds = 0.0; // how much later the music begins than in the group's first
    double m_dLikeness = 1.0;      // of the opening to the group's first, up to 1
};

/// True when the song at the first place is the better one to keep.
using BetterSong = std::function<bool(std::size_t, std::size_t)>;

/// Groups of songs that hold the same audio, coded, levelled, equalised or cut at the start by up
/// to 2 s differently, each with the best one first and the others as they come; groups in the
/// order of their first songs in the list. Openings that are alike are not enough, as much music
/// begins with the same drums: two of key, length, outro and excerpt have to agree as well, three
/// where the openings differ more. Songs that are the same by way of a third one are in one group.
/// Those whose opening has no strokes are in none. An index leads to the pairs that are looked at,
/// whose number grows with that of the songs.
[[nodiscard]] std::vector<std::vector<CSameSong>> FindSameSongs(std::span<CSongMarks const> songs,
                                                                BetterSong const& isBetter);
