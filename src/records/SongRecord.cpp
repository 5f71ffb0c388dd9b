// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// One function goes through the fields in both directions, so that they can't differ.

#include "records/SongRecord.h"

#include <bit>
#include <type_traits>
#include <utility>

namespace {

constexpr std::uint8_t kForm = 3; // Fixed: of the fields below.
constexpr unsigned kByteBits = 8;
constexpr std::size_t kNumberBytes = 8;

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
    template <typename Part>
    bool IsThere(std::optional<Part> const& part) {
        Number(part.has_value() ? 1 : 0);
        return part.has_value();
    }

    std::vector<std::uint8_t> m_vBytes;
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
        std::uint64_t const size = Number();
        m_bGood = m_bGood && size <= m_bytes.size();
        if (m_bGood) {
            bytes.assign(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(size));
            m_bytes = m_bytes.subspan(size);
        }
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
        std::uint64_t const count = Number();
        m_bGood = m_bGood && count <= m_bytes.size() / kNumberBytes;
        list.resize(m_bGood ? count : 0);
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

template <typename Archive, typename Heard>
void Told(Archive& archive, Heard& heard) {
    archive.Integer(heard.m_outcome.m_problem);
    Reported(archive, heard.m_outcome.m_report);
    archive.Bytes(heard.m_sTempo);
    if (archive.IsThere(heard.m_candidates)) {
        Listed(archive, *heard.m_candidates);
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
