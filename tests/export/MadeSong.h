// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "export/TakenSong.h"

/// A heard song of 60 s with beats in measures of four: `count` of them, the first at `first`
/// seconds, which is beat `place` of its measure, with their half beats between.
inline CTakenSong MadeSong(double bpm, double first, int count, int place = 1) {
    CTakenSong song;
    song.m_sPath = "/music/House/song.mp3";
    song.m_dSeconds = 60.0;
    song.m_dTempo = bpm;
    song.m_tempoSource = ETempoSource::Analysis;
    song.m_beats.m_nBeatsPerMeasure = 4;
    for (int i = 0; i < 2 * count; ++i) {
        CBeatTime& half = song.m_beats.m_vHalfBeats.emplace_back();
        half.m_dSeconds = first + i * 30.0 / bpm;
        half.m_nPlace = static_cast<std::uint8_t>(i % 2 != 0 ? 0 : (place - 1 + i / 2) % 4 + 1);
    }
    return song;
}

inline CHarmony MadeKey(EKeyMode mode, std::int32_t tonic) {
    CHarmony key;
    key.m_eMode = mode;
    key.m_nTonic = tonic;
    return key;
}
