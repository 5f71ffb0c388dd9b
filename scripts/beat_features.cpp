// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Prints what the beat model sees, for its trainer: one song a line, with its name, the half beats
// of the fitted grid before they are counted, the engine's grid and measure marks, whether the
// tempo is steady, and the numbers of each reading; and what comes of it, beats and downbeats.
// JSON.

#include "platform/AudioSetup.h"
#include "song/AttackRises.h"
#include "song/BeatFeatures.h"
#include "song/BeatGridFit.h"
#include "song/SongProfile.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace {

nlohmann::json Describe(CBeatSource const& source) {
    std::vector<std::uint8_t> const rises = AttackRises(source.m_curves.m_vAttack);
    CFittedGrid const grid = FitGrid(source.m_vPoints, static_cast<double>(source.m_fBpm), rises,
                                     source.m_curves.m_vBands);
    nlohmann::json song = {{"times", grid.m_vSeconds},
                           {"steady", grid.m_bSteady},
                           {"points", source.m_vPoints},
                           {"marks", source.m_vMarks},
                           {"readings", nlohmann::json::array()}};
    if (!grid.m_vSeconds.empty()) {
        auto const accents = AccentsOf(source.m_curves, rises, grid.m_vSeconds);
        for (CBeatFeatures const& features : BeatFeaturesOf(accents)) {
            song["readings"].push_back(features);
        }
    }
    return song;
}

} // namespace

int main(int count, char** arguments) {
    SetUpAudio();
    CProfileOptions options;
    options.m_bHearBeats = true;
    for (int i = 1; i < count; ++i) {
        CSongProfile const profile = ProfileSong(arguments[i], options);
        if (!profile.IsHeard()) {
            std::cerr << "tactus-beat-features: " << arguments[i] << " can't be heard\n";
            return 1;
        }
        nlohmann::json song = Describe(profile.m_beatSource);
        song["file"] = arguments[i];
        song["beats"] = profile.m_beats.Beats();
        song["downbeats"] = profile.m_beats.Downbeats();
        std::cout << song.dump() << '\n';
    }
    return 0;
}
