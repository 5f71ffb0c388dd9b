// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/TagFile.h"

#include "platform/TagSeek.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::int64_t kPieceBytes = 262'144; // Fixed: of what is moved, at a time.

} // namespace

/// Keeps the error of a call that gave `result`. Returns: whether to go on with it.
bool CTagFile::Note(std::int64_t result) {
    if (result < 0 && errno != EINTR && m_nError == 0) {
        m_nError = errno;
    }
    return result >= 0 || m_nError == 0;
}

bool CTagFile::Read(std::span<char> room, std::int64_t place) {
    while (!room.empty()) {
        ssize_t const count = ::pread(m_nFile, room.data(), room.size(), place);
        if (!Note(count) || count == 0) {
            return false;
        }
        if (count > 0) {
            room = room.subspan(static_cast<std::size_t>(count));
            place += count;
        }
    }
    return true;
}

void CTagFile::Write(std::span<char const> bytes, std::int64_t place) {
    while (!bytes.empty() && m_nError == 0) {
        ssize_t const count = ::pwrite(m_nFile, bytes.data(), bytes.size(), place);
        if (Note(count) && count > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(count));
            place += count;
        }
    }
}

/// Moves everything from `from` on to `to`.
void CTagFile::Move(std::int64_t from, std::int64_t to) {
    std::int64_t const count = std::max<std::int64_t>(length() - from, 0);
    std::vector<char> piece(static_cast<std::size_t>(std::min(count, kPieceBytes)));
    for (std::int64_t done = 0; done < count && m_nError == 0;) {
        std::int64_t const size = std::min(count - done, kPieceBytes);
        // What moves back begins at its end, so that nothing is written over before it is read.
        std::int64_t const offset = to > from ? count - done - size : done;
        std::span<char> const room(piece.data(), static_cast<std::size_t>(size));
        if (!Read(room, from + offset)) {
            m_nError = m_nError == 0 ? EIO : m_nError;
            return;
        }
        Write(room, to + offset);
        done += size;
    }
}

TagLib::ByteVector CTagFile::readBlock(TagSize length) {
    std::int64_t const rest = std::max<std::int64_t>(this->length() - m_nPosition, 0);
    auto const size = static_cast<unsigned>(
        std::min<std::uint64_t>({length, static_cast<std::uint64_t>(rest), UINT32_MAX}));
    TagLib::ByteVector block(size, 0);
    if (size == 0 || !Read({block.data(), size}, m_nPosition)) {
        return {};
    }
    m_nPosition += size;
    return block;
}

void CTagFile::writeBlock(TagLib::ByteVector const& data) {
    Write({data.data(), data.size()}, m_nPosition);
    m_nPosition += data.size();
}

void CTagFile::insert(TagLib::ByteVector const& data, TagStart start, TagSize replace) {
    auto const place = static_cast<std::int64_t>(start);
    std::int64_t const oldEnd = place + static_cast<std::int64_t>(replace);
    std::int64_t const newEnd = place + data.size();
    std::int64_t const size = length() + newEnd - oldEnd;
    if (newEnd != oldEnd) {
        Move(oldEnd, newEnd);
    }
    Write({data.data(), data.size()}, place);
    if (newEnd < oldEnd) {
        truncate(size);
    }
    m_nPosition = newEnd;
}

void CTagFile::removeBlock(TagStart start, TagSize length) {
    insert(TagLib::ByteVector(), start, length);
}

void CTagFile::seek(TagOffset offset, Position position) {
    m_nPosition = SoughtPlace(*this, offset, position);
}

TagOffset CTagFile::length() {
    struct stat info = {};
    return Note(::fstat(m_nFile, &info)) ? info.st_size : 0;
}

void CTagFile::truncate(TagOffset length) {
    if (m_nError == 0) {
        (void)Note(::ftruncate(m_nFile, length));
    }
}
