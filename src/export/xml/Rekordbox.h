// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <optional>
#include <span>
#include <string>

struct CTakenSong;

struct CRekordboxWishes {
    /// Songs below the first folder are told as lying below the second; both empty: as they lie.
    std::string m_sBaseHere = {};
    std::string m_sBaseThere = {};
    /// Seconds added to every position; nothing: what the program is known to count otherwise.
    std::optional<double> m_offsetSeconds = {};
    std::string m_sVersion = {}; // of the program that writes
};

/// Songs as a collection that rekordbox imports (Pioneer DJ, "rekordbox xml format",
/// version 1.0.0): names, tempo, key, beats as TEMPO entries, one where the song has one tempo,
/// memory cues where the intro ends and the outro begins, and one playlist for each folder. Songs
/// that couldn't be heard are left out.
[[nodiscard]] std::string RekordboxOf(std::span<CTakenSong const> songs,
                                      CRekordboxWishes const& wishes);

/// How much later a position of the song is in rekordbox, in seconds: it has played what encoders
/// of MP3 put before the music since version 1.5.4 (its release notes), which is left out here
/// where the encoder's tag tells of it.
[[nodiscard]] double RekordboxOffset(CTakenSong const& song);
