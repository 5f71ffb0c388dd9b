// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Correction.h"

#include "app/Tapping.h"
#include "song/AudioKinds.h"
#include "song/StoreTempo.h"
#include "song/TagTempo.h"

#include <array>
#include <charconv>

namespace {

struct CNamedRatio {
    std::string_view m_sName;
    int m_nTimes;
    int m_nOver;
};

constexpr std::array<CNamedRatio, 8> kRatios = {{{"x2", 2, 1},
                                                 {"/2", 1, 2},
                                                 {"2:1", 2, 1},
                                                 {"1:2", 1, 2},
                                                 {"3:2", 3, 2},
                                                 {"2:3", 2, 3},
                                                 {"4:3", 4, 3},
                                                 {"3:4", 3, 4}}};

} // namespace

std::optional<CTempoFix> TempoFixOf(std::string_view word) {
    for (CNamedRatio const& ratio : kRatios) {
        if (ratio.m_sName == word) {
            return CTempoFix{.m_nTimes = ratio.m_nTimes, .m_nOver = ratio.m_nOver, .m_dBpm = 0.0};
        }
    }
    if (!word.starts_with('=')) {
        return std::nullopt;
    }
    double bpm = 0.0;
    char const* const last = word.data() + word.size();
    auto const [end, error] = std::from_chars(word.data() + 1, last, bpm);
    bool const isTempo = error == std::errc() && end == last && IsTempoInRange(bpm);
    return isTempo ? std::optional(CTempoFix{.m_nTimes = 0, .m_nOver = 0, .m_dBpm = bpm})
                   : std::nullopt;
}

bool IsTempoInRange(double bpm) {
    return bpm >= kSlowestTagBpm && bpm <= kFastestTagBpm;
}

double FixedTempo(CTempoFix const& fix, double bpm) {
    return fix.IsRatio() ? bpm * fix.m_nTimes / fix.m_nOver : fix.m_dBpm;
}

std::optional<double> TappedTempo(std::vector<double> const& seconds) {
    if (seconds.size() < kFewestTaps) {
        return std::nullopt;
    }
    double const bpm = kMinuteSeconds * static_cast<double>(seconds.size() - 1) /
                       (seconds.back() - seconds.front());
    return IsTempoInRange(bpm) ? std::optional(bpm) : std::nullopt;
}

EWriteProblem StoreCorrection(CString const& path, CString const& text, CJournal& journal,
                              CCorrectionOptions const& options) {
    CAudioKind const* const kind = FindAudioKind(path);
    bool const isLibrarys = kind != nullptr && kind->m_writing == ETagWriting::Library;
    if (isLibrarys && !options.m_bOtherKinds) {
        return EWriteProblem::OtherExtension;
    }
    auto const witness = journal.Witness(options.m_eWriter, ETextOrigin::Hand);
    CStoreTempoOptions store;
    store.m_tempoBefore = options.m_textBefore;
    store.m_bKeepTime = options.m_bKeepTime;
    store.m_pWitness = witness.get();
    return StoreGivenTempo(path, text, store);
}
