// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/Labels.h"

#include "export/DecimalText.h"
#include "export/TakenSong.h"
#include "export/TempoMap.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int kSecondDecimals = 6; // Standard: as Audacity writes them.

struct CLabel {
    double m_dStart;
    double m_dEnd;
    std::string m_sText;
};

std::vector<CLabel> MakeLabels(CTakenSong const& song) {
    std::vector<CLabel> labels;
    if (song.m_dIntroEnd > 0.0) {
        labels.push_back({0.0, song.m_dIntroEnd, "intro"});
    }
    int measure = 0;
    for (CBeatTime const& beat : WholeBeats(song.m_beats)) {
        bool const isDownbeat = beat.m_nPlace == 1;
        measure += isDownbeat ? 1 : 0;
        labels.push_back({beat.m_dSeconds, beat.m_dSeconds,
                          std::to_string(measure) + "." + std::to_string(beat.m_nPlace) +
                              (isDownbeat ? " downbeat" : "")});
    }
    if (song.m_dOutroStart > 0.0 && song.m_dOutroStart < song.m_dSeconds) {
        labels.push_back({song.m_dOutroStart, song.m_dSeconds, "outro"});
    }
    std::ranges::stable_sort(labels, {}, &CLabel::m_dStart);
    return labels;
}

} // namespace

std::string LabelsOf(CTakenSong const& song) {
    std::string text;
    for (CLabel const& label : MakeLabels(song)) {
        text += DecimalText(label.m_dStart, kSecondDecimals) + "\t" +
                DecimalText(label.m_dEnd, kSecondDecimals) + "\t" + label.m_sText + "\n";
    }
    return text;
}
