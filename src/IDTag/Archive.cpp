// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/Archive.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <sys/stat.h>

void CMemoryArchive::Write(void const* data, std::uint32_t length) {
    auto const* bytes = static_cast<std::uint8_t const*>(data);
    m_vBytes.insert(m_vBytes.end(), bytes, bytes + length);
}

void CMemoryArchive::Read(void* data, std::uint32_t length, std::int32_t /*flag*/) {
    std::size_t const count = std::min<std::size_t>(length, m_vBytes.size() - m_nNext);
    if (count > 0) {
        std::memcpy(data, m_vBytes.data() + m_nNext, count);
        m_nNext += count;
    }
}

CFileArchive::CFileArchive(std::string const& path, EMode mode)
    : m_eMode(mode), m_pFile(std::fopen(path.c_str(), mode == EMode::Store ? "wbe" : "rbe")) {
    struct stat info = {};
    bool const isFile =
        m_pFile != nullptr && fstat(fileno(m_pFile), &info) == 0 && S_ISREG(info.st_mode);
    // What isn't a file has no length to hold claims against, so it isn't read.
    m_bWhole = isFile || (m_pFile != nullptr && mode == EMode::Store);
    m_nAvailable = isFile && mode == EMode::Load ? static_cast<std::uint64_t>(info.st_size) : 0;
}

CFileArchive::~CFileArchive() {
    (void)Close();
}

void CFileArchive::Write(void const* data, std::uint32_t length) {
    m_bWhole = m_bWhole && std::fwrite(data, 1, length, m_pFile) == length;
}

void CFileArchive::Read(void* data, std::uint32_t length, std::int32_t /*flag*/) {
    if (m_pFile == nullptr) {
        return;
    }
    std::size_t const count = std::fread(data, 1, length, m_pFile);
    m_nAvailable -= std::min<std::uint64_t>(m_nAvailable, count);
    m_bWhole = m_bWhole && count == length;
}

bool CFileArchive::Close() {
    if (m_pFile != nullptr) {
        bool const isClosed = std::fclose(m_pFile) == 0;
        m_pFile = nullptr;
        m_bWhole = m_bWhole && isClosed;
    }
    return m_bWhole;
}

CSysTime CSysTime::Now() {
    auto const sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return CSysTime(
        CDate{std::chrono::duration_cast<std::chrono::microseconds>(sinceEpoch).count()});
}

void CSysTime::Serialize(CArchive& archive) {
    if (archive.IsStoring() != 0) {
        archive << m_date;
        return;
    }
    CArchiveObject object;
    archive >> object;
    m_date = std::holds_alternative<CDate>(object) ? object : CArchiveObject();
}
