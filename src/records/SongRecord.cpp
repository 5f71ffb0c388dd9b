// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// One function goes through the fields in both directions, so that they can't differ.

#include "records/SongRecord.h"

#include <bit>
#include <cmath>
#include <type_traits>
#include <utility>

namespace {

constexpr std::uint8_t kForm = 5; // Fixed: of the fields below.
constexpr unsigned kByteBits = 8;
constexpr std::size_t kNumberBytes = 8;
constexpr unsigned kStepBits = 7;
constexpr unsigned kMoreFollow = 0x80;
constexpr double kMicroseconds = 1e6; // Standard: in a second.

/// Appends fields.
class CStoring {
public:
    void Number(std::uint64_t number) {
        for (std::size_t i = 0; i < kNumberBytes; ++i) {
            m_vBytes.push_back(static_cast<std::uint8_t>(number >> (i * kByteBits)));
        }
    }
    void Bytes(std::string const& bytes) {
        Number(bytes.size());
        m_vBytes.insert(m_vBytes.end(), bytes.begin(), bytes.end());
    }

    template <typename Whole>
    void Integer(Whole const& number) {
        Number(static_cast<std::uint64_t>(number));
    }
    void Real(double number) { Number(std::bit_cast<std::uint64_t>(number)); }
    void Real(float number) { Number(std::bit_cast<std::uint32_t>(number)); }
    void Text(CString const& text) {
        Number(text.GetLength());
        for (char16_t const unit : text.Units()) {
            m_vBytes.push_back(static_cast<std::uint8_t>(unit));
            m_vBytes.push_back(static_cast<std::uint8_t>(unit >> kByteBits));
        }
    }
    template <typename Item>
    void Count(std::vector<Item> const& list) {
        Number(list.size());
    }
    void Levels(std::vector<std::uint8_t> const& levels) {
        Number(levels.size());
        m_vBytes.insert(m_vBytes.end(), levels.begin(), levels.end());
    }
    void Rising(std::vector<std::int64_t> const& list) {
        Number(list.size());
        std::int64_t last = 0;
        for (std::int64_t const number : list) {
            Step(number, last);
        }
    }
    void Beats(std::vector<CBeatTime> const& list) {
        Number(list.size());
        std::int64_t last = 0;
        for (CBeatTime const& beat : list) {
            Step(std::llround(beat.m_dSeconds * kMicroseconds), last);
            m_vBytes.push_back(static_cast<std::uint8_t>(beat.m_nPlace << 1U) |
                               static_cast<std::uint8_t>(beat.m_bMarked));
        }
    }
    template <typename Part>
    bool IsThere(std::optional<Part> const& part) {
        Number(part.has_value() ? 1 : 0);
        return part.has_value();
    }

    std::vector<std::uint8_t> m_vBytes;

private:
    /// The step from the number before, low bits first, seven a byte; the top bit says that more
    /// follow. Numbers that rise by little take little room.
    void Step(std::int64_t number, std::int64_t& last) {
        auto rest = static_cast<std::uint64_t>(number) - static_cast<std::uint64_t>(last);
        last = number;
        while (rest >= kMoreFollow) {
            m_vBytes.push_back(static_cast<std::uint8_t>(rest | kMoreFollow));
            rest >>= kStepBits;
        }
        m_vBytes.push_back(static_cast<std::uint8_t>(rest));
    }
};

/// Takes fields. Once something is missing, everything is.
class CLoading {
public:
    explicit CLoading(std::span<std::uint8_t const> bytes) : m_bytes(bytes) {}

    std::uint64_t Number() {
        m_bGood = m_bGood && m_bytes.size() >= kNumberBytes;
        std::uint64_t number = 0;
        for (std::size_t i = 0; i < kNumberBytes && m_bGood; ++i) {
            number |= std::uint64_t{m_bytes[i]} << (i * kByteBits);
        }
        m_bytes = m_bytes.subspan(m_bGood ? kNumberBytes : 0);
        return number;
    }
    void Bytes(std::string& bytes) {
        std::span<std::uint8_t const> const taken = Take(Number());
        bytes.assign(taken.begin(), taken.end());
    }

    template <typename Whole>
    void Integer(Whole& number) {
        number = static_cast<Whole>(Number());
    }
    void Real(double& number) { number = std::bit_cast<double>(Number()); }
    void Real(float& number) {
        number = std::bit_cast<float>(static_cast<std::uint32_t>(Number()));
    }
    void Text(CString& text) {
        std::uint64_t const length = Number();
        m_bGood = m_bGood && length <= m_bytes.size() / 2;
        std::u16string units;
        for (std::uint64_t i = 0; i < length && m_bGood; ++i) {
            units.push_back(
                static_cast<char16_t>(m_bytes[2 * i] | m_bytes[2 * i + 1] << kByteBits));
        }
        m_bytes = m_bytes.subspan(2 * units.size());
        text = CString(units);
    }
    template <typename Item>
    void Count(std::vector<Item>& list) {
        list.resize(CountOf(kNumberBytes));
    }
    void Levels(std::vector<std::uint8_t>& levels) {
        std::span<std::uint8_t const> const bytes = Take(Number());
        levels.assign(bytes.begin(), bytes.end());
    }
    void Rising(std::vector<std::int64_t>& list) {
        list.resize(CountOf(1));
        std::uint64_t last = 0;
        for (std::int64_t& number : list) {
            number = Step(last);
        }
    }
    void Beats(std::vector<CBeatTime>& list) {
        list.resize(CountOf(2));
        std::uint64_t last = 0;
        for (CBeatTime& beat : list) {
            beat.m_dSeconds = static_cast<double>(Step(last)) / kMicroseconds;
            std::uint8_t const place = Byte();
            beat.m_nPlace = static_cast<std::uint8_t>(place >> 1U);
            beat.m_bMarked = (place & 1U) != 0;
        }
    }
    template <typename Part>
    bool IsThere(std::optional<Part>& part) {
        if (Number() != 0) {
            part.emplace();
        }
        return part.has_value();
    }

    [[nodiscard]] bool IsWhole() const { return m_bGood && m_bytes.empty(); }

private:
    /// The next `size` bytes; none when there aren't as many.
    std::span<std::uint8_t const> Take(std::uint64_t size) {
        m_bGood = m_bGood && size <= m_bytes.size();
        std::size_t const taken = m_bGood ? static_cast<std::size_t>(size) : 0;
        std::span<std::uint8_t const> const bytes = m_bytes.first(taken);
        m_bytes = m_bytes.subspan(taken);
        return bytes;
    }

    std::uint8_t Byte() {
        std::span<std::uint8_t const> const byte = Take(1);
        return byte.empty() ? std::uint8_t{0} : byte.front();
    }

    /// A count of things that take `leastBytes` each at least; 0 when there can't be as many.
    std::size_t CountOf(std::size_t leastBytes) {
        std::uint64_t const count = Number();
        m_bGood = m_bGood && count <= m_bytes.size() / leastBytes;
        return m_bGood ? static_cast<std::size_t>(count) : 0;
    }

    std::int64_t Step(std::uint64_t& last) {
        std::uint64_t step = 0;
        std::uint8_t byte = kMoreFollow;
        for (unsigned bits = 0; byte >= kMoreFollow && bits < kByteBits * kNumberBytes;
             bits += kStepBits) {
            byte = Byte();
            step |= static_cast<std::uint64_t>(byte & (kMoreFollow - 1U)) << bits;
        }
        last += step;
        return static_cast<std::int64_t>(last);
    }

    std::span<std::uint8_t const> m_bytes;
    bool m_bGood = true;
};

template <typename Archive, typename Tags>
void Tagged(Archive& archive, Tags& tags) {
    archive.Bytes(tags.m_shown.m_sTitle);
    archive.Bytes(tags.m_shown.m_sArtist);
    archive.Bytes(tags.m_shown.m_sAlbum);
    archive.Bytes(tags.m_shown.m_sKey);
    archive.Bytes(tags.m_shown.m_sTempo);
    archive.Integer(tags.m_shown.m_tempo.m_worth);
    archive.Real(tags.m_shown.m_tempo.m_dBpm);
    archive.Text(tags.m_sTempoFrame);
}

template <typename Archive, typename Report>
void Reported(Archive& archive, Report& report) {
    archive.Integer(report.m_problem);
    archive.Integer(report.m_nError);
    archive.Bytes(report.m_sDetail);
    archive.Integer(report.m_nPackets);
    archive.Integer(report.m_nBadPackets);
    archive.Integer(report.m_bBreaksOff);
    archive.Real(report.m_dPromisedSeconds);
    archive.Real(report.m_dHeardSeconds);
    archive.Integer(report.m_container);
    archive.Bytes(report.m_sCodec);
    archive.Bytes(report.m_sDecoder);
    archive.Integer(report.m_nFileRate);
    archive.Integer(report.m_nChannels);
    archive.Integer(report.m_nSkippedFrames);
    archive.Integer(report.m_startNote);
    archive.Integer(report.m_identity.m_nDevice);
    archive.Integer(report.m_identity.m_nInode);
    archive.Integer(report.m_identity.m_nSize);
    archive.Integer(report.m_identity.m_nWrittenTime);
    archive.Integer(report.m_identity.m_nChangedTime);
}

template <typename Archive, typename Candidates>
void Listed(Archive& archive, Candidates& candidates) {
    archive.Real(candidates.m_fConfidence);
    archive.Count(candidates.m_vCandidates);
    for (auto& reading : candidates.m_vCandidates) {
        archive.Real(reading.m_fBpm);
        archive.Integer(reading.m_nTimes);
        archive.Integer(reading.m_nOver);
        archive.Real(reading.m_fScore);
    }
}

template <typename Archive, typename Harmony>
void Keyed(Archive& archive, Harmony& harmony) {
    archive.Integer(harmony.m_eMode);
    archive.Integer(harmony.m_nTonic);
    archive.Real(harmony.m_fConfidence);
    archive.Real(harmony.m_fTuningCents);
}

template <typename Archive, typename Beats>
void Beaten(Archive& archive, Beats& beats) {
    archive.Beats(beats.m_vHalfBeats);
    archive.Integer(beats.m_nBeatsPerMeasure);
    archive.Integer(beats.m_bSteady);
    archive.Real(beats.m_fBeatConfidence);
    archive.Real(beats.m_fDownbeatConfidence);
}

template <typename Archive, typename Positions>
void Placed(Archive& archive, Positions& positions) {
    archive.Rising(positions.m_vGrid);
    archive.Rising(positions.m_vMarks);
    archive.Integer(positions.m_nIntroEnd);
    archive.Integer(positions.m_nOutroStart);
    archive.Rising(positions.m_vFades);
    archive.Rising(positions.m_vIntroMixes);
    archive.Rising(positions.m_vOutroMixes);
}

template <typename Archive, typename Values>
void Weighed(Archive& archive, Values& values) {
    archive.Count(values);
    for (auto& value : values) {
        archive.Real(value);
    }
}

template <typename Archive, typename Levels>
void Levelled(Archive& archive, Levels& levels) {
    archive.Real(levels.m_fTop);
    archive.Integer(levels.m_nSamples);
    archive.Levels(levels.m_vLevels);
}

template <typename Archive, typename Facts>
void Found(Archive& archive, Facts& facts) {
    archive.Integer(facts.m_nFrames);
    archive.Real(facts.m_fBpm);
    archive.Real(facts.m_fHeardBpm);
    Keyed(archive, facts.m_key);
    Keyed(archive, facts.m_harmony);
    Beaten(archive, facts.m_beats);
    Weighed(archive, facts.m_vEnergyAccents);
    Weighed(archive, facts.m_vBassAccents);
    Placed(archive, facts.m_positions);
    archive.Integer(facts.m_print.m_nMicroseconds);
    Weighed(archive, facts.m_print.m_vValues);
    Levelled(archive, facts.m_opening);
    Levelled(archive, facts.m_energy);
    Levelled(archive, facts.m_bass);
}

template <typename Archive, typename Heard>
void Told(Archive& archive, Heard& heard) {
    archive.Integer(heard.m_outcome.m_problem);
    Reported(archive, heard.m_outcome.m_report);
    archive.Bytes(heard.m_sTempo);
    archive.Integer(heard.m_bByLength);
    if (archive.IsThere(heard.m_candidates)) {
        Listed(archive, *heard.m_candidates);
    }
    if (archive.IsThere(heard.m_facts)) {
        Found(archive, *heard.m_facts);
    }
    if (archive.IsThere(heard.m_harmony)) {
        Keyed(archive, *heard.m_harmony);
    }
}

template <typename Archive, typename Record>
void Whole(Archive& archive, Record& record) {
    if (archive.IsThere(record.m_tags)) {
        Tagged(archive, *record.m_tags);
    }
    if (archive.IsThere(record.m_heard)) {
        Told(archive, *record.m_heard);
    }
}

} // namespace

std::vector<std::uint8_t> BytesOf(CSongRecord const& record) {
    CStoring storing;
    storing.Number(kForm);
    Whole(storing, record);
    return std::move(storing.m_vBytes);
}

std::optional<CSongRecord> SongRecordOf(std::span<std::uint8_t const> bytes) {
    CLoading loading(bytes);
    CSongRecord record;
    if (loading.Number() != kForm) {
        return std::nullopt;
    }
    Whole(loading, record);
    return loading.IsWhole() ? std::optional(std::move(record)) : std::nullopt;
}
