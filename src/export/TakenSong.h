// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/HeardSong.h"
#include "song/SongTags.h"

#include <string>
#include <vector>

/// Where a tempo that is told comes from.
enum class ETempoSource {
    None,
    Tag,
    Analysis,
    Length, // of a clip under 30 s
};

/// One song as it is taken along into other programs: all that is known of it, in the units of
/// people. A song that can't be heard has its names and the reason. A plain value.
/// Units: seconds from the first sample of the music; they count at the file's own rate, so that a
/// position is the same in every program that leaves out what the encoder added.
struct CTakenSong {
    std::string m_sPath;   // bytes, as given or found
    std::string m_sFolder; // that the path lies in, bytes; empty when the path has none
    std::string m_sTitle;  // UTF-8, as the next; empty: the file doesn't say
    std::string m_sArtist;
    std::string m_sAlbum;
    std::string m_sTagKey;    // the key that the tag tells
    double m_dTagTempo = 0.0; // the tempo that the tag tells; 0 for none that is believed

    CAnalysisOutcome m_outcome; // why there is no tempo, and what the sound was read from
    std::string m_sMessage;     // the same for a person, in the words of the program; or empty

    double m_dSeconds = 0.0;       // how long the music lasts
    double m_dBitsPerSecond = 0.0; // of the whole file; 0 when not known
    double m_dTempo = 0.0;         // beats a minute; 0 for none
    ETempoSource m_tempoSource = ETempoSource::None;
    double m_dHeardTempo = 0.0;    // by the analysis, whatever is told
    CTempoCandidates m_candidates; // its readings, and the confidence in it
    CHarmony m_key;                // by the bass: no confidence, no tuning
    CHarmony m_harmony;            // by chords and melody

    CBeatTimes m_beats;                  // half beats in seconds, each with its place
    std::vector<float> m_vEnergyAccents; // weights of the half beats of a measure
    std::vector<float> m_vBassAccents;   // likewise, below 120 Hz

    double m_dIntroEnd = 0.0;
    double m_dOutroStart = 0.0;
    std::vector<double> m_vFades; // at each the song before is turned down by a step more
    std::vector<double> m_vIntroMixes;
    std::vector<double> m_vOutroMixes;

    CPrint m_print;    // an excerpt by which the song is found again
    CLevels m_opening; // the envelope's first 23.8 seconds
    CLevels m_energy;  // envelope of the whole song; none unless it was asked for
    CLevels m_bass;    // peaks below 120 Hz; likewise

    CEnginePositions m_positions; // the engine's own points, exactly
};

/// The song at `path` of which `tags` were read and which was `heard`, or tried to. What was heard
/// without its facts has a tempo and its readings.
[[nodiscard]] CTakenSong TakenSongOf(std::string path, CShownTags const& tags,
                                     CHeardSong const& heard);

/// Bits a second of a whole file of which so many seconds were heard; 0 when not known.
[[nodiscard]] double BitRateOf(CDecodeReport const& report, double seconds);

/// The folder that `path` lies in, as the path has it; empty when it has none.
[[nodiscard]] std::string FolderOf(std::string const& path);

/// "Am", "F#", "Eb": a key as tags have it; empty for none.
[[nodiscard]] std::string PlainKey(CHarmony const& key);
