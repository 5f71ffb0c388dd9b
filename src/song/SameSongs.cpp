// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The steps: make the shapes of the openings; enter the codes of their anchors in an index; collect
// the pairs whose codes begin alike; look at each, first roughly; join those that are the same; put
// the best of each group first and measure the others against it.

#include "song/SameSongs.h"

#include "base/EngineRate.h"
#include "song/OpeningShape.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <tuple>

namespace {

constexpr double kSureLikeness = 0.93;     // Tuned: SameSongsTest and docs/song/SameSongs.md.
constexpr double kLikelyLikeness = 0.70;   // Tuned: likewise.
constexpr int kAgreeingWhenSure = 2;       // Tuned: likewise; of four.
constexpr int kAgreeingWhenLikely = 3;     // Tuned: likewise.
constexpr double kGlanceLikeness = 0.45;   // Tuned: likewise; below it nothing more is looked at.
constexpr double kMostSecondsLonger = 5.0; // Fixed: another fade or a cut end, not another version.
constexpr double kSameLengthSeconds = 0.3; // Tuned: likewise; more than coders add at the end.
constexpr double kSameOutroSeconds = 0.1;  // Tuned: likewise.
constexpr double kSameExcerpt = 0.8;       // Tuned: likewise; a correlation.
constexpr double kValueSeconds = 4.0 / kEngineRateHz; // Fixed: every fourth sample of an excerpt.
constexpr std::int32_t kExcerptReachValues = 96;      // Derived: 1.5 elements of 256 samples.
constexpr std::int32_t kFewestValues = 32;            // Tuned: docs/song/SameSongs.md.
constexpr std::uint32_t kIndexBits = 20;    // Tuned: SameSongsTest; what codes must have in common.
constexpr std::uint32_t kCodeBits = 32;     // Fixed: of a code.
constexpr std::size_t kMostNeighbours = 32; // Fixed: what a common rhythm can cost.
constexpr std::int32_t kReachElements = 3;  // Fixed: anchors lie that far off at the most.

/// One anchor of one song.
struct CEntry {
    std::uint32_t m_nCode;
    std::uint32_t m_nSong;
    std::int32_t m_nElement;

    bool operator<(CEntry const& other) const {
        return std::tie(m_nCode, m_nSong, m_nElement) <
               std::tie(other.m_nCode, other.m_nSong, other.m_nElement);
    }
};

/// Two songs, the first one earlier in the list, that may be the same when shifted so.
struct CPair {
    std::uint32_t m_nFirst;
    std::uint32_t m_nSecond;
    std::int32_t m_nShift;

    bool operator==(CPair const&) const = default;
    bool operator<(CPair const& other) const {
        return std::tie(m_nFirst, m_nSecond, m_nShift) <
               std::tie(other.m_nFirst, other.m_nSecond, other.m_nShift);
    }
};

std::vector<CEntry> MakeIndex(std::vector<COpeningShape> const& shapes) {
    std::vector<CEntry> index;
    for (std::size_t song = 0; song < shapes.size(); ++song) {
        for (std::int32_t const anchor : shapes[song].Anchors()) {
            bool isThere = false;
            std::uint32_t const code = shapes[song].CodeAt(anchor, &isThere);
            if (isThere) {
                index.push_back({code, static_cast<std::uint32_t>(song), anchor});
            }
        }
    }
    std::sort(index.begin(), index.end());
    return index;
}

/// Pairs whose codes agree in their first bits and that `isPossible`. Of a rhythm that many songs
/// have, each is paired with those alone whose further bits are nearest.
template <typename Possible>
std::vector<CPair> CollectPairs(std::vector<CEntry> const& index, Possible isPossible) {
    constexpr std::uint32_t kRestBits = kCodeBits - kIndexBits;
    std::vector<CPair> pairs;
    for (std::size_t i = 0; i < index.size(); ++i) {
        std::size_t const end = std::min(i + 1 + kMostNeighbours, index.size());
        for (std::size_t k = i + 1; k < end; ++k) {
            CEntry a = index[i];
            CEntry b = index[k];
            if (a.m_nCode >> kRestBits != b.m_nCode >> kRestBits) {
                break;
            }
            if (a.m_nSong > b.m_nSong) {
                std::swap(a, b);
            }
            CPair const pair = {a.m_nSong, b.m_nSong, a.m_nElement - b.m_nElement};
            if (a.m_nSong != b.m_nSong && std::abs(pair.m_nShift) <= kMostOpeningShift &&
                isPossible(pair)) {
                pairs.push_back(pair);
            }
        }
    }
    std::sort(pairs.begin(), pairs.end());
    pairs.erase(std::unique(pairs.begin(), pairs.end()), pairs.end());
    return pairs;
}

/// Correlation of a[i] and b[i + lag], of values around 0; 0 when fewer than `kFewestValues` meet.
double CorrelationAt(std::span<float const> a, std::span<float const> b, std::int32_t lag) {
    std::int32_t const from = std::max(0, -lag);
    std::int32_t const to =
        std::min(static_cast<std::int32_t>(a.size()), static_cast<std::int32_t>(b.size()) - lag);
    double products = 0.0;
    double squaresA = 0.0;
    double squaresB = 0.0;
    for (std::int32_t i = from; i < to; ++i) {
        auto const x = static_cast<double>(a[static_cast<std::size_t>(i)]);
        auto const y = static_cast<double>(b[static_cast<std::size_t>(std::int64_t{i} + lag)]);
        products += x * y;
        squaresA += x * x;
        squaresB += y * y;
    }
    bool const isEnough = to - from >= kFewestValues && squaresA > 0.0 && squaresB > 0.0;
    return isEnough ? products / (std::sqrt(squaresA) * std::sqrt(squaresB)) : 0.0;
}

/// True when both excerpts were taken at one spot and hold the same. `ahead` is how much later the
/// music begins in `a`, in seconds.
bool DoExcerptsAgree(CSongMarks const& a, CSongMarks const& b, double ahead) {
    double const apart = (a.m_dExcerptSeconds - ahead - b.m_dExcerptSeconds) / kValueSeconds;
    auto const size = static_cast<double>(a.m_excerpt.size() + b.m_excerpt.size());
    if (!(std::abs(apart) < size)) {
        return false;
    }
    auto const middle = static_cast<std::int32_t>(std::lround(apart));
    for (std::int32_t lag = middle - kExcerptReachValues; lag <= middle + kExcerptReachValues;
         ++lag) {
        if (CorrelationAt(a.m_excerpt, b.m_excerpt, lag) >= kSameExcerpt) {
            return true;
        }
    }
    return false;
}

/// How many of key, length and outro agree; `ahead` as above.
int QuickAgreements(CSongMarks const& a, CSongMarks const& b, double ahead) {
    bool const hasSameKey =
        a.m_eMode != EKeyMode::None && a.m_eMode == b.m_eMode && a.m_nTonic == b.m_nTonic;
    bool const isAsLong = std::abs(a.m_dSeconds - ahead - b.m_dSeconds) < kSameLengthSeconds;
    bool const hasSameOutro =
        std::abs(a.m_dOutroSeconds - ahead - b.m_dOutroSeconds) < kSameOutroSeconds;
    return static_cast<int>(hasSameKey) + static_cast<int>(isAsLong) +
           static_cast<int>(hasSameOutro);
}

/// The songs and what was found out about them.
class CSameSongs {
public:
    explicit CSameSongs(std::span<CSongMarks const> songs)
        : m_songs(songs), m_vRoots(songs.size()) {
        std::iota(m_vRoots.begin(), m_vRoots.end(), std::uint32_t{0});
        for (CSongMarks const& song : songs) {
            m_vShapes.emplace_back(song.m_opening);
        }
    }

    void JoinPairs() {
        auto const isPossible = [this](CPair const& pair) { return IsPossible(pair); };
        for (CPair const& pair : CollectPairs(MakeIndex(m_vShapes), isPossible)) {
            if (RootOf(pair.m_nFirst) != RootOf(pair.m_nSecond) && AreSame(pair)) {
                std::uint32_t const a = RootOf(pair.m_nFirst);
                std::uint32_t const b = RootOf(pair.m_nSecond);
                m_vRoots[std::max(a, b)] = std::min(a, b);
            }
        }
    }

    std::vector<std::vector<CSameSong>> Groups(BetterSong const& isBetter) {
        std::map<std::uint32_t, std::vector<std::size_t>> members;
        for (std::size_t song = 0; song < m_songs.size(); ++song) {
            members[RootOf(static_cast<std::uint32_t>(song))].push_back(song);
        }
        std::vector<std::vector<CSameSong>> groups;
        for (auto const& [root, songs] : members) {
            if (songs.size() > 1) {
                groups.push_back(MakeGroup(songs, isBetter));
            }
        }
        return groups;
    }

private:
    std::uint32_t RootOf(std::uint32_t song) {
        while (m_vRoots[song] != song) {
            m_vRoots[song] = m_vRoots[m_vRoots[song]];
            song = m_vRoots[song];
        }
        return song;
    }

    /// False for two that can't be the same, whatever their openings hold.
    [[nodiscard]] bool IsPossible(CPair const& pair) const {
        CSongMarks const& a = m_songs[pair.m_nFirst];
        CSongMarks const& b = m_songs[pair.m_nSecond];
        double const ahead = pair.m_nShift * kOpeningElementSeconds;
        return std::abs(a.m_dSeconds - ahead - b.m_dSeconds) <= kMostSecondsLonger &&
               QuickAgreements(a, b, ahead) >= kAgreeingWhenSure - 1; // excerpts may agree too
    }

    [[nodiscard]] bool AreSame(CPair const& pair) const {
        COpeningShape const& first = m_vShapes[pair.m_nFirst];
        COpeningShape const& second = m_vShapes[pair.m_nSecond];
        if (GlanceAtShapes(first, second, pair.m_nShift) < kGlanceLikeness) {
            return false;
        }
        CShapeMatch const match = MatchShapes(first, second, pair.m_nShift, kReachElements);
        int const wanted =
            match.m_dLikeness >= kSureLikeness ? kAgreeingWhenSure : kAgreeingWhenLikely;
        CSongMarks const& a = m_songs[pair.m_nFirst];
        CSongMarks const& b = m_songs[pair.m_nSecond];
        double const ahead = match.m_nShift * kOpeningElementSeconds;
        int const agreeing = QuickAgreements(a, b, ahead);
        return match.m_dLikeness >= kLikelyLikeness &&
               (agreeing >= wanted || (agreeing + 1 == wanted && DoExcerptsAgree(a, b, ahead)));
    }

    [[nodiscard]] std::vector<CSameSong> MakeGroup(std::vector<std::size_t> const& songs,
                                                   BetterSong const& isBetter) const {
        std::size_t best = songs.front();
        for (std::size_t const song : songs) {
            best = isBetter(song, best) ? song : best;
        }
        std::vector<CSameSong> group = {{.m_nSong = best}};
        for (std::size_t const song : songs) {
            if (song != best) {
                CShapeMatch const match = MatchShapes(m_vShapes[song], m_vShapes[best]);
                group.push_back({.m_nSong = song,
                                 .m_dOffsetSeconds = match.m_nShift * kOpeningElementSeconds,
                                 .m_dLikeness = match.m_dLikeness});
            }
        }
        return group;
    }

    std::span<CSongMarks const> m_songs;
    std::vector<COpeningShape> m_vShapes;
    std::vector<std::uint32_t> m_vRoots; // a song of the same group, itself for the group's first
};

} // namespace

std::vector<std::vector<CSameSong>> FindSameSongs(std::span<CSongMarks const> songs,
                                                  BetterSong const& isBetter) {
    CSameSongs same(songs);
    same.JoinPairs();
    return same.Groups(isBetter);
}
