// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/MacCFile.h"

#include "base/Assertion.h"
#include "base/FileManager.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char kFileSource[] = "IDTag/MacCFile"; // Fixed: the source that assertions name.
constexpr std::uint32_t kAccessMask = 0xF;       // Fixed: the low four bits of the open flags.
constexpr std::int32_t kCauseClosed = 2;         // Fixed: cause of an operation on a closed file.
constexpr std::int32_t kNoOsError = -1;          // Fixed: there was no error of the system.
constexpr mode_t kNewFileMode = 0666;            // Standard: POSIX fopen; the mask takes bits away.

/// A file that can be sought and measured in 32 bits. Devices pass: they don't block.
bool IsUsable(int file) {
    struct stat info = {};
    return ::fstat(file, &info) == 0 && (S_ISREG(info.st_mode) || S_ISCHR(info.st_mode)) &&
           info.st_size <= static_cast<off_t>(kLargestFileBytes);
}

/// Opens without waiting for the other end of a fifo, and empties the file only once it is known
/// to be usable. Null when that fails.
std::FILE* OpenStream(std::string const& path, int flags, bool truncate) {
    int const file = ::open(path.c_str(), flags | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, kNewFileMode);
    if (file < 0) {
        return nullptr;
    }
    std::FILE* stream = nullptr;
    if (IsUsable(file) && (!truncate || ::ftruncate(file, 0) == 0)) {
        stream = ::fdopen(file, (flags & O_ACCMODE) == O_RDONLY ? "rb" : "r+b");
    }
    if (stream == nullptr) {
        ::close(file);
    }
    return stream;
}

std::uint32_t Position32(std::int64_t position) {
    return static_cast<std::uint32_t>(std::clamp<std::int64_t>(position, 0, kLargestFileBytes));
}

} // namespace

bool CFileException::GetErrorMessage(wchar_t* /*text*/, std::uint32_t /*room*/,
                                     std::uint32_t* /*helpContext*/) const {
    return true;
}

CFile::CFile(wchar_t const* path, std::uint32_t flags) {
    (void)Open(path, flags, nullptr);
}

CFile::~CFile() {
    (void)Close();
}

bool CFile::Open(wchar_t const* path, std::uint32_t flags, CFileException* /*error*/) {
    m_sPath = path;
    std::uint32_t const access = flags & kAccessMask;
    // Deliberate: an unknown access opens nothing and closes nothing, so that the answer only says
    // whether a stream was open already.
    if (access > modeReadWrite) {
        return m_pfile != nullptr;
    }
    bool const create = (flags & modeCreate) != 0;
    TACTUS_ASSERT_TEXT(kFileSource, access != modeRead || !create,
                       "(nOpenFlags & modeCreate) == 0");
    (void)Close();
    int systemFlags = access == modeRead ? O_RDONLY : O_RDWR;
    systemFlags |= create ? O_CREAT : 0;
    m_pfile = OpenStream(m_sPath.ToPath(), systemFlags, create && (flags & modeNoTruncate) == 0);
    return m_pfile != nullptr;
}

CString CFile::GetFilePath() const {
    return m_sPath;
}

void CFile::RequireOpen() const {
    if (m_pfile == nullptr) {
        throw new CFileException(kCauseClosed, kNoOsError, nullptr);
    }
}

/// A stream must be sought between reading and writing.
void CFile::TurnTo(ELast operation) {
    if (m_eLast != operation && m_eLast != ELast::Neither) {
        (void)::fseeko(m_pfile, 0, SEEK_CUR);
    }
    m_eLast = operation;
}

std::int64_t CFile::Position() const {
    return ::ftello(m_pfile);
}

std::uint32_t CFile::Seek(std::int32_t offset, std::uint32_t from) {
    RequireOpen();
    std::int64_t target = offset;
    switch (from) {
    case begin:
        if (offset < 0 && static_cast<std::uint32_t>(offset) <= GetLength()) {
            target = static_cast<std::uint32_t>(offset);
        }
        break;
    case current:
        target += Position();
        break;
    case end:
        target += GetLength();
        break;
    default:
        // Deliberate: any other origin moves nothing.
        return GetPosition();
    }
    if (target >= 0 && target <= kLargestFileBytes) {
        (void)::fseeko(m_pfile, target, SEEK_SET);
        m_eLast = ELast::Neither;
    }
    return GetPosition();
}

std::uint32_t CFile::GetLength() const {
    RequireOpen();
    std::int64_t const position = Position();
    (void)::fseeko(m_pfile, 0, SEEK_END);
    std::int64_t const length = Position();
    (void)::fseeko(m_pfile, position, SEEK_SET);
    return Position32(length);
}

std::uint32_t CFile::Read(void* buffer, std::uint32_t count) {
    RequireOpen();
    TurnTo(ELast::Read);
    return static_cast<std::uint32_t>(std::fread(buffer, 1, count, m_pfile));
}

std::uint32_t CFile::Write(void const* buffer, std::uint32_t count) {
    RequireOpen();
    TurnTo(ELast::Write);
    return static_cast<std::uint32_t>(std::fwrite(buffer, 1, count, m_pfile));
}

std::uint32_t CFile::GetPosition() const {
    TACTUS_ASSERT_TEXT(kFileSource, m_pfile != nullptr, "m_pfile != NULL");
    return Position32(Position());
}

std::int32_t CFile::Close() {
    if (m_pfile == nullptr) {
        return 0;
    }
    std::int32_t const result = std::fclose(m_pfile);
    m_pfile = nullptr;
    m_eLast = ELast::Neither;
    return result;
}

void CFile::Abort() {
    (void)Close();
}

void CFile::Remove(wchar_t const* path) {
    (void)CFileManager::Remove(CString(path));
}

void CFile::Rename(wchar_t const* from, wchar_t const* to) {
    (void)CFileManager::Rename(CString(from), CString(to));
}
