// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

#include <cstdint>
#include <cstdio>

constexpr std::uint32_t kLargestFileBytes = 0xFFFFFFFF; // Fixed: positions have 32 bits.

/// What operations on a closed `CFile` throw: a heap object, by pointer. The handler that catches
/// it deletes it.
class CFileException {
public:
    CFileException(std::int32_t cause, std::int32_t osError, wchar_t const* fileName)
        : m_nCause(cause), m_nOsError(osError), m_sFileName(fileName) {}
    CFileException(CFileException const&) = default;
    CFileException& operator=(CFileException const&) = default;
    virtual ~CFileException() = default;

    /// Writes nothing. Returns: true.
    bool GetErrorMessage(wchar_t* text, std::uint32_t room, std::uint32_t* helpContext) const;

    std::int32_t m_nCause;
    std::int32_t m_nOsError; // -1 when there is none
    CString m_sFileName;
};

/// Byte file over a standard I/O stream. Positions and lengths have 32 bits: a file over 4 GB
/// isn't opened, and neither is a folder, a fifo or a socket.
/// `Read`, `Write`, `Seek` and `GetLength` of a closed file throw a `CFileException*` with cause
/// 2, system error -1 and no name.
/// Thread: one at a time.
class CFile {
public:
    // Fixed: the open flags. The low four bits are the access.
    static constexpr std::uint32_t modeRead = 0;
    static constexpr std::uint32_t modeWrite = 1;
    static constexpr std::uint32_t modeReadWrite = 2;
    static constexpr std::uint32_t modeCreate = 0x1000;
    static constexpr std::uint32_t modeNoTruncate = 0x2000;

    // Fixed: where `Seek` counts from.
    static constexpr std::uint32_t begin = 0;
    static constexpr std::uint32_t current = 1;
    static constexpr std::uint32_t end = 2;

    CFile() = default;

    /// Opens `path`; whether that worked is for the later operations to show.
    CFile(wchar_t const* path, std::uint32_t flags);
    virtual ~CFile();
    CFile(CFile const&) = delete;
    CFile& operator=(CFile const&) = delete;

    /// Reading takes an existing file and asserts that creating wasn't asked for. Writing always
    /// reads as well: without `modeCreate` it takes an existing file; with it a missing file is
    /// made, and an existing one emptied unless `modeNoTruncate` is set. An access of 3 to 15
    /// opens nothing. `error` isn't used.
    /// Returns: true when a stream is open afterwards.
    bool Open(wchar_t const* path, std::uint32_t flags, CFileException* error);

    virtual CString GetFilePath() const;

    /// Moves `offset` bytes from the beginning, the current position or the end; any other `from`
    /// moves nothing, and neither does a place before the beginning. From the beginning a negative
    /// offset stands for the unsigned position of the same bits, if the file reaches that far.
    /// Returns: the position afterwards.
    virtual std::uint32_t Seek(std::int32_t offset, std::uint32_t from);

    virtual std::uint32_t GetLength() const;

    /// Returns: the bytes read, fewer than `count` at the end of the file.
    virtual std::uint32_t Read(void* buffer, std::uint32_t count);

    std::uint32_t Write(void const* buffer, std::uint32_t count);

    /// Asserts that the file is open.
    std::uint32_t GetPosition() const;

    /// Returns: the stream's close result; 0 when the file was closed already.
    std::int32_t Close();

    /// Closes without reporting errors.
    void Abort();

    /// Deletes a file, or gives it a new name in place of whatever has that name. Errors aren't
    /// reported.
    static void Remove(wchar_t const* path);
    static void Rename(wchar_t const* from, wchar_t const* to);

private:
    enum class ELast { Neither, Read, Write };

    void RequireOpen() const;
    void TurnTo(ELast operation);
    std::int64_t Position() const;

    CString m_sPath;
    std::FILE* m_pfile = nullptr;
    ELast m_eLast = ELast::Neither;
};
