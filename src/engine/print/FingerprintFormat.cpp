// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Byte forms of a print: full, compact, and through an archive.

#include "engine/print/Fingerprint.h"

#include "base/IArchive.h"
#include "base/Rounding.h"

#include <bit>
#include <limits>
#include <new>
#include <utility>

namespace {

constexpr std::uint8_t kFormat = 4;               // Fixed: the format written.
constexpr std::uint8_t kOldestReadable = 4;       // Fixed: formats below are not understood.
constexpr std::uint32_t kHeaderBytes = 9;         // Fixed: format, time.
constexpr std::uint32_t kCompactHeaderBytes = 13; // Fixed: format, half a time, extremes.
constexpr std::uint32_t kValueBytes = 4;          // Fixed: a single-precision float.
constexpr float kCompactScale = 255.0f;           // Fixed: largest byte.
constexpr std::int32_t kMaxArchivedValues = 1
                                            << 20; // Fixed: an archive that claims more is broken.

void PutBigEndian(std::uint8_t* bytes, std::uint64_t value, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        bytes[i] = static_cast<std::uint8_t>(value >> (8 * (count - 1 - i)));
    }
}

std::uint64_t GetBigEndian(std::uint8_t const* bytes, std::uint32_t count) {
    std::uint64_t value = 0;
    for (std::uint32_t i = 0; i < count; ++i) {
        value = value << 8 | bytes[i];
    }
    return value;
}

void PutFloat(std::uint8_t* bytes, float value) {
    PutBigEndian(bytes, std::bit_cast<std::uint32_t>(value), kValueBytes);
}

float GetFloat(std::uint8_t const* bytes) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(GetBigEndian(bytes, kValueBytes)));
}

/// Truncated and held to 0 .. 255.
std::uint8_t ToByte(float scaled) {
    if (scaled >= kCompactScale) {
        return std::numeric_limits<std::uint8_t>::max();
    }
    return static_cast<std::uint8_t>(TruncateToUint32(static_cast<double>(scaled)));
}

/// The size-query protocol. Returns: true when the caller is to write `needed` bytes to `buf`.
bool HasRoom(std::uint8_t const* buf, std::uint32_t* size, std::uint32_t needed, bool* result) {
    if (buf == nullptr) {
        *size = needed;
        *result = true;
        return false;
    }
    *result = *size >= needed;
    return *result;
}

template <typename T>
T ReadValue(IArchive* archive) {
    T value{};
    archive->Read(&value, sizeof value, 0);
    return value;
}

template <typename T>
void WriteValue(IArchive* archive, T value) {
    archive->Write(&value, sizeof value);
}

} // namespace

bool CFingerprint::CopyToMemory(std::uint8_t* buf, std::uint32_t* size) const {
    auto const values = static_cast<std::uint32_t>(m_vValues.size());
    bool result = false;
    if (HasRoom(buf, size, kHeaderBytes + kValueBytes * values, &result)) {
        buf[0] = kFormat;
        PutBigEndian(buf + 1, static_cast<std::uint64_t>(m_nTime), 8);
        std::uint8_t* place = buf + kHeaderBytes;
        for (float const value : m_vValues) {
            PutFloat(place, value);
            place += kValueBytes;
        }
    }
    return result;
}

bool CFingerprint::CopyToCompactMemory(std::uint8_t* buf, std::uint32_t* size) const {
    auto const values = static_cast<std::uint32_t>(m_vValues.size());
    bool result = false;
    if (HasRoom(buf, size, kCompactHeaderBytes + values, &result)) {
        buf[0] = kFormat;
        // Deliberate: only the low half of the time is kept, which wraps after 71 minutes; a print
        // is captured within the first 30 seconds.
        PutBigEndian(buf + 1, static_cast<std::uint32_t>(m_nTime), 4);
        PutFloat(buf + 5, m_fMin);
        PutFloat(buf + 9, m_fMax);
        float const range = m_fMax - m_fMin;
        float const divisor = range == 0.0f ? 1.0f : range;
        std::uint8_t* place = buf + kCompactHeaderBytes;
        for (float const value : m_vValues) {
            *place++ = ToByte((value - m_fMin) / divisor * kCompactScale);
        }
    }
    return result;
}

bool CFingerprint::BuildFromMemory(std::uint8_t const* buf, std::uint32_t len) {
    if (buf == nullptr || len <= kHeaderBytes) {
        return false;
    }
    m_nTime = static_cast<std::int64_t>(GetBigEndian(buf + 1, 8));
    m_vValues.resize((len - kHeaderBytes) / kValueBytes);
    std::uint8_t const* place = buf + kHeaderBytes;
    for (float& value : m_vValues) {
        value = GetFloat(place);
        place += kValueBytes;
    }
    BuildMinMax();
    return true;
}

bool CFingerprint::BuildFromCompactMemory(std::uint8_t const* buf, std::uint32_t len) {
    if (buf == nullptr || len <= kCompactHeaderBytes || buf[0] < kOldestReadable) {
        return false;
    }
    std::vector<float> values;
    try {
        values.resize(len - kCompactHeaderBytes);
    } catch (std::bad_alloc const&) {
        return false;
    }
    m_nTime = static_cast<std::int64_t>(GetBigEndian(buf + 1, 4));
    m_fMin = GetFloat(buf + 5);
    m_fMax = GetFloat(buf + 9);
    float const range = m_fMax - m_fMin;
    std::uint8_t const* place = buf + kCompactHeaderBytes;
    for (float& value : values) {
        value = static_cast<float>(*place++) / kCompactScale * range + m_fMin;
    }
    m_vValues = std::move(values);
    return true;
}

void CFingerprint::Serialize(IArchive* archive) {
    if (archive->IsStoring() != 0) {
        WriteValue(archive, kFormat);
        WriteValue(archive, m_nTime);
        WriteValue(archive, static_cast<std::int32_t>(m_vValues.size()));
        for (float const value : m_vValues) {
            WriteValue(archive, value);
        }
        return;
    }
    if (ReadValue<std::uint8_t>(archive) >= kOldestReadable) {
        m_nTime = ReadValue<std::int64_t>(archive);
        auto const count = ReadValue<std::int32_t>(archive);
        m_vValues.clear();
        for (std::int32_t i = 0; i < count && count <= kMaxArchivedValues; ++i) {
            m_vValues.push_back(ReadValue<float>(archive));
        }
    }
    BuildMinMax();
}
