// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/FileFronts.h"

#include "IDTag/PosixFile.h"

#include <algorithm>
#include <optional>
#include <sys/stat.h>

namespace {

constexpr std::uint64_t kPieceBytes = 65'536;        // Fixed: compared at a time.
constexpr std::uint64_t kMostFrontBytes = 4'194'304; // Fixed: enough for pictures in a tag.

std::optional<std::uint64_t> SizeOf(int file) {
    struct stat info = {};
    bool const isKnown = ::fstat(file, &info) == 0 && info.st_size >= 0;
    return isKnown ? std::optional(static_cast<std::uint64_t>(info.st_size)) : std::nullopt;
}

/// The last `room.size()` bytes before `end`.
bool ReadBefore(int file, std::uint64_t end, std::vector<std::uint8_t>& room) {
    return ReadAllAt(file, room, end - room.size());
}

/// How many bytes the files have in common at their ends; nothing when they can't be read.
std::optional<std::uint64_t> CommonEnd(int oldFile, std::uint64_t oldSize, int newFile,
                                       std::uint64_t newSize) {
    std::uint64_t const most = std::min(oldSize, newSize);
    for (std::uint64_t same = 0; same < most;) {
        auto const size = static_cast<std::size_t>(std::min(most - same, kPieceBytes));
        std::vector<std::uint8_t> oldPiece(size);
        std::vector<std::uint8_t> newPiece(size);
        if (!ReadBefore(oldFile, oldSize - same, oldPiece) ||
            !ReadBefore(newFile, newSize - same, newPiece)) {
            return std::nullopt;
        }
        auto const other = std::mismatch(oldPiece.rbegin(), oldPiece.rend(), newPiece.rbegin());
        auto const equal = static_cast<std::uint64_t>(other.first - oldPiece.rbegin());
        same += equal;
        if (equal < size) {
            return same;
        }
    }
    return most;
}

} // namespace

CFileFronts FrontsOf(int oldFile, int newFile) {
    CFileFronts fronts;
    std::optional<std::uint64_t> const oldSize = SizeOf(oldFile);
    std::optional<std::uint64_t> const newSize = SizeOf(newFile);
    if (!oldSize || !newSize) {
        return fronts;
    }
    std::optional<std::uint64_t> const same = CommonEnd(oldFile, *oldSize, newFile, *newSize);
    if (!same || std::max(*oldSize, *newSize) - *same > kMostFrontBytes) {
        return fronts;
    }
    fronts.m_vOld.resize(static_cast<std::size_t>(*oldSize - *same));
    fronts.m_vNew.resize(static_cast<std::size_t>(*newSize - *same));
    fronts.m_bIsKnown =
        ReadAllAt(oldFile, fronts.m_vOld, 0) && ReadAllAt(newFile, fronts.m_vNew, 0);
    if (!fronts.m_bIsKnown) {
        return {};
    }
    return fronts;
}
