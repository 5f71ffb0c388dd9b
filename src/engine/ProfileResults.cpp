// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The record's lists, enumerations and equality. Rates and the fade curve are in
// ProfileResultsCurve.cpp.

#include "engine/ProfileResults.h"

#include "base/IArchive.h"
#include "engine/envelope/ImpactPoints.h"

#include <utility>

namespace {

// Fixed: an archive that claims more positions is broken; eight hours have 20,000 measures.
constexpr std::int32_t kMaxArchivedPositions = 1 << 20;

/// Element `index` of `list`, when there is one.
bool Enum(CProfileResults::CPositions const& list, std::int64_t index, std::int64_t* position) {
    if (index < 0 || index >= static_cast<std::int64_t>(list.GetCount())) {
        return false;
    }
    *position = list[static_cast<std::size_t>(index)];
    return true;
}

} // namespace

void CProfileResults::AddIntroFadePoint(std::uint64_t position) {
    m_vIntroFadePoints.Add(static_cast<std::int64_t>(position));
}

void CProfileResults::AddIntroBeatMixSproc(std::uint64_t position) {
    m_vIntroSprockets.Add(static_cast<std::int64_t>(position));
}

void CProfileResults::AddOutroBeatMixSproc(std::uint64_t position) {
    m_vOutroSprockets.Add(static_cast<std::int64_t>(position));
}

void CProfileResults::EraseBeatMixSprocs() {
    m_vIntroSprockets.RemoveAll();
    m_vOutroSprockets.RemoveAll();
}

void CProfileResults::AddMeasMarks(CPfImpactPoints const* points) {
    m_vMeasMarks.RemoveAll();
    std::int64_t position = 0;
    for (std::int32_t i = 0; points->EnumMeasStartMarks(i, &position); ++i) {
        m_vMeasMarks.Add(position);
    }
}

void CProfileResults::AddBeatPatterns(CPfBeatPattern const* a, CPfBeatPattern const* b) {
    m_patternA = *a;
    m_patternB = *b;
}

bool CProfileResults::GetBeatPatterns(CPfBeatPattern* a, CPfBeatPattern* b) const {
    *a = m_patternA;
    *b = m_patternB;
    return true;
}

void CProfileResults::SetKey(std::uint16_t tonic, std::uint16_t mode) {
    m_nTonic = tonic;
    m_nMode = mode;
}

bool CProfileResults::GetKey(std::uint16_t* tonic, std::uint16_t* mode) const {
    *tonic = m_nTonic;
    *mode = m_nMode;
    return true;
}

bool CProfileResults::EnumMeasMarks(std::int32_t index, std::int64_t* position) const {
    return Enum(m_vMeasMarks, index, position);
}

bool CProfileResults::EnumBeatMixSprocs(std::uint16_t index, std::int64_t* position,
                                        bool* isIntro) const {
    if (Enum(m_vIntroSprockets, index, position)) {
        *isIntro = true;
        return true;
    }
    auto const outro = static_cast<std::uint16_t>(index - m_vIntroSprockets.GetCount());
    if (Enum(m_vOutroSprockets, outro, position)) {
        *isIntro = false;
        return true;
    }
    return false;
}

bool CProfileResults::EnumStdMixSprocs(std::uint16_t index, std::int64_t* position,
                                       bool* isIntro) const {
    if (index > 1) {
        return false;
    }
    *isIntro = index == 0;
    *position = *isIntro ? m_nIntroEnd : m_nOutroStart;
    return true;
}

bool CProfileResults::IsValid() const {
    return m_nSampleRate != 0 && m_nSampleCount != 0 && m_fBpm != 0.0f &&
           !m_vIntroSprockets.IsEmpty() && !m_vOutroSprockets.IsEmpty() &&
           !m_vIntroFadePoints.IsEmpty();
}

bool CProfileResults::operator==(CProfileResults const& other) const {
    return m_nSampleRate == other.m_nSampleRate && m_fBpm == other.m_fBpm &&
           m_fPeakLevel == other.m_fPeakLevel && m_fFirstExtra == other.m_fFirstExtra &&
           m_fSecondExtra == other.m_fSecondExtra && m_nIntroEnd == other.m_nIntroEnd &&
           m_nOutroStart == other.m_nOutroStart && m_nSampleCount == other.m_nSampleCount &&
           m_nTonic == other.m_nTonic && m_nMode == other.m_nMode &&
           m_patternA == other.m_patternA && m_patternB == other.m_patternB &&
           m_nBitRate == other.m_nBitRate && m_sText == other.m_sText &&
           m_vIntroSprockets == other.m_vIntroSprockets &&
           m_vOutroSprockets == other.m_vOutroSprockets &&
           m_vIntroFadePoints == other.m_vIntroFadePoints && m_vMeasMarks == other.m_vMeasMarks;
}

void CProfileResults::Serialize(IArchive* archive, CPositions& list) {
    if (archive->IsStoring() == 0) {
        std::int32_t count = 0;
        archive->Read(&count, sizeof(count), 0);
        list.RemoveAll();
        for (std::int32_t i = 0; i < count && count <= kMaxArchivedPositions; ++i) {
            std::int64_t position = 0;
            archive->Read(&position, sizeof(position), 0);
            list.Add(position);
        }
        return;
    }
    auto const count = static_cast<std::int32_t>(list.GetCount());
    archive->Write(&count, sizeof(count));
    for (std::int64_t const position : list) {
        archive->Write(&position, sizeof(position));
    }
}

void CProfileResults::SetExtras(float first, float second) {
    m_fFirstExtra = first;
    m_fSecondExtra = second;
}

void CProfileResults::SetText(std::wstring text) {
    m_sText = std::move(text);
}
