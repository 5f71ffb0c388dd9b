// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/IArchive.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <variant>
#include <vector>

/// A moment, in microseconds since 1970-01-01 00:00 UTC.
struct CDate {
    std::int64_t m_nMicroseconds = 0;
    bool operator==(CDate const&) const = default;
};

/// A value that archives embed whole; the first alternative is "nothing". Text is UTF-8.
using CArchiveObject = std::variant<std::monostate, bool, std::int64_t, double, std::string,
                                    std::vector<std::uint8_t>, CDate>;

/// Byte stream that also embeds objects: a 32-bit length in the machine's byte order, then as many
/// bytes of CBOR (RFC 8949), a map that holds the object under the key "Object".
class CArchive {
public:
    virtual ~CArchive() = default;

    /// Non-zero while the archive is written, 0 while it is read.
    virtual std::int32_t IsStoring() = 0;

    /// Bytes left to read; a claimed length above it is not believed.
    virtual std::uint64_t GetAvailable() = 0;

    virtual void Write(void const* data, std::uint32_t length) = 0;

    /// Callers pass 0 as the flag. A short read leaves the rest untouched.
    virtual void Read(void* data, std::uint32_t length, std::int32_t flag) = 0;

    CArchive& operator<<(CArchiveObject const& object);

    /// `object` becomes "nothing" when the stream holds no whole object.
    CArchive& operator>>(CArchiveObject& object);

protected:
    CArchive() = default;
    CArchive(CArchive const&) = default;
    CArchive& operator=(CArchive const&) = default;
};

/// Archive in memory, either way.
class CMemoryArchive final : public IArchive, public CArchive {
public:
    /// An empty one, to be written.
    CMemoryArchive() : m_bStoring(true) {}

    /// One to be read from the first of `bytes` on.
    explicit CMemoryArchive(std::vector<std::uint8_t> bytes) : m_vBytes(std::move(bytes)) {}

    std::int32_t IsStoring() override { return m_bStoring ? 1 : 0; }
    std::uint64_t GetAvailable() override { return m_bStoring ? 0 : m_vBytes.size() - m_nNext; }
    void Write(void const* data, std::uint32_t length) override;
    void Read(void* data, std::uint32_t length, std::int32_t flag) override;

    /// What was written, or what was given to be read.
    [[nodiscard]] std::vector<std::uint8_t> const& GetBytes() const { return m_vBytes; }

private:
    std::vector<std::uint8_t> m_vBytes;
    std::size_t m_nNext = 0;
    bool m_bStoring = false;
};

/// Archive over a file. `path` is taken byte by byte.
class CFileArchive final : public IArchive, public CArchive {
public:
    enum class EMode { Load, Store };

    /// Opens an existing file for reading, or empties or makes one for writing.
    CFileArchive(std::string const& path, EMode mode);
    ~CFileArchive() override;
    CFileArchive(CFileArchive const&) = delete;
    CFileArchive& operator=(CFileArchive const&) = delete;

    std::int32_t IsStoring() override { return m_eMode == EMode::Store ? 1 : 0; }
    std::uint64_t GetAvailable() override { return m_nAvailable; }
    void Write(void const* data, std::uint32_t length) override;
    void Read(void* data, std::uint32_t length, std::int32_t flag) override;

    /// Ends the archive.
    /// Returns: true when the file was opened and every byte asked for was read or written.
    bool Close();

private:
    EMode m_eMode;
    std::FILE* m_pFile = nullptr;
    std::uint64_t m_nAvailable = 0;
    bool m_bWhole = true;
};

/// A point in time that persists itself as a date object; it may hold none.
class CSysTime {
public:
    CSysTime() = default;
    explicit CSysTime(CDate date) : m_date(date) {}
    static CSysTime Now();

    /// The date, or "nothing".
    [[nodiscard]] CArchiveObject const& GetDate() const { return m_date; }

    /// Writes the date, or replaces it by the one read.
    void Serialize(CArchive& archive);

private:
    CArchiveObject m_date;
};
