// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/ID3Reader.h"

#include "IDTag/ID3Tag.h"
#include "IDTag/MpegChain.h"
#include "IDTag/PosixFile.h"
#include "IDTag/TagTarget.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>

namespace {

// Fixed: the trailer's fields as they are read: album before artist.
constexpr std::uint32_t kTrailerBytes = 128;
constexpr std::string_view kTrailerMark = "TAG";
constexpr std::size_t kTitleOffset = 3;
constexpr std::size_t kAlbumOffset = 33;
constexpr std::size_t kArtistOffset = 63;
constexpr std::size_t kTextBytes = 30;
constexpr std::size_t kYearOffset = 93;
constexpr std::size_t kYearBytes = 4;
constexpr std::size_t kGenreOffset = 127;
constexpr std::uint8_t kLastGenre = 125;
constexpr std::size_t kWorkBytes = 32;

// Fixed: the private trailer: its mark, and the block of texts further ahead.
constexpr std::int32_t kMarkFromEnd = 48;
constexpr std::int32_t kBlockFromEnd = 7936;
constexpr std::string_view kVeltoMark = "Velto";
constexpr std::uint32_t kLongestBlockText = 256;
constexpr int kTexts = 3;

/// A text of the ID3v1 trailer without its trailing spaces; empty when it isn't UTF-8.
CString TrailerText(std::uint8_t const* field, std::size_t bytes) {
    std::array<char, kWorkBytes> work = {};
    std::memcpy(work.data(), field, bytes);
    CID3Reader::KillTrailingSpaces(work.data(), static_cast<std::uint32_t>(bytes));
    return {work.data()};
}

bool ReadExactly(CFile* file, void* room, std::uint32_t count) {
    return file->Read(room, count) == count;
}

/// One text of the private trailer: a 16-bit big-endian length and as many bytes.
bool ReadVeltoText(CFile* file, CString& text) {
    std::array<std::uint8_t, 2> prefix = {};
    if (!ReadExactly(file, prefix.data(), 2)) {
        return false;
    }
    std::uint32_t const length = prefix[0] * 256U + prefix[1];
    std::array<char, kLongestBlockText + 1> bytes = {};
    if (length > kLongestBlockText || !ReadExactly(file, bytes.data(), length)) {
        return false;
    }
    text = CString(bytes.data());
    return true;
}

/// Why a file doesn't open for writing.
EWriteProblem ProblemOfOpening(CString const& path) {
    struct stat info = {};
    bool const isTooLarge = ::stat(path.ToPath().c_str(), &info) == 0 && S_ISREG(info.st_mode) &&
                            info.st_size > static_cast<off_t>(kLargestFileBytes);
    return isTooLarge ? EWriteProblem::FileTooLarge : EWriteProblem::NotWritable;
}

bool IsMp4(CString const& path, std::uint32_t offset) {
    CDescriptor const file(::open(path.ToPath().c_str(), O_RDONLY | O_CLOEXEC));
    return file.IsOpen() && IsMp4At(file.Get(), offset);
}

EWriteProblem StoreTagString(CString const& path, char const* frameId, CString const& value) {
    if (CID3Tag::IsFileUpdateable(path) != kStatusOk) {
        return ProblemOfOpening(path);
    }
    if (!HasWrittenExtension(path)) {
        return EWriteProblem::OtherExtension;
    }
    CID3Tag tag;
    if (tag.OpenFile(path) < 0) {
        return EWriteProblem::TagUnreadable;
    }
    if (tag.SetString(frameId, value) == kStatusNothing) {
        return EWriteProblem::None;
    }
    if (tag.HasUnreachedData() || tag.WouldDrop(frameId)) {
        return EWriteProblem::UnknownData;
    }
    if (IsMp4(path, tag.GetTagSize())) {
        return EWriteProblem::OtherFormat;
    }
    bool rewritten = false;
    (void)tag.UpdateFile(&rewritten);
    return tag.GetWriteProblem();
}

} // namespace

std::int32_t CID3Reader::ImportMetaData(CFile* file, char const* frameId, CString& value) {
    return ImportID3v2MetaData(file, frameId, value) != 0 ||
                   ImportID3v1MetaData(file, frameId, value) != 0 || ImportVeltoMetaData(file) != 0
               ? 1
               : 0;
}

std::int32_t CID3Reader::ImportID3v2MetaData(CFile* file, char const* frameId, CString& value) {
    CID3Tag tag;
    if (tag.OpenFile(file->GetFilePath()) != kStatusOk) {
        return 0;
    }
    return tag.GetString(frameId, value) == kStatusOk ? 1 : 0;
}

std::int32_t CID3Reader::ImportID3v1MetaData(CFile* file, char const* /*frameId*/, CString& value) {
    std::array<std::uint8_t, kTrailerBytes> trailer = {};
    if (file->GetLength() <= kTrailerBytes) {
        return 0;
    }
    file->Seek(-static_cast<std::int32_t>(kTrailerBytes), CFile::end);
    if (!ReadExactly(file, trailer.data(), kTrailerBytes) ||
        std::memcmp(trailer.data(), kTrailerMark.data(), kTrailerMark.size()) != 0) {
        return 0;
    }
    // Deliberate: whatever was asked for, title, artist and album give way to the year, and the
    // year to a known genre, whose name comes out empty.
    value = TrailerText(&trailer[kYearOffset], kYearBytes);
    if (trailer[kGenreOffset] <= kLastGenre) {
        value.Empty();
    }
    for (std::size_t const offset : {kTitleOffset, kAlbumOffset, kArtistOffset}) {
        if (!TrailerText(&trailer[offset], kTextBytes).IsEmpty()) {
            return 1;
        }
    }
    return 0;
}

std::int32_t CID3Reader::ImportVeltoMetaData(CFile* file) {
    auto const length = static_cast<std::int32_t>(file->GetLength());
    // Deliberate: the length is taken as signed, so that files over 2 GB pass this test.
    if (length >= 0 && length <= kMarkFromEnd) {
        return 0;
    }
    std::array<char, kLongestBlockText> mark = {};
    file->Seek(-kMarkFromEnd, CFile::end);
    file->Read(mark.data(), kLongestBlockText);
    if (std::string_view(mark.data(), kVeltoMark.size()) != kVeltoMark ||
        (length >= 0 && length < kBlockFromEnd)) {
        return 0;
    }
    file->Seek(-kBlockFromEnd, CFile::end);
    bool hasText = false;
    for (int i = 0; i < kTexts; ++i) {
        CString text;
        if (!ReadVeltoText(file, text)) {
            return 0;
        }
        hasText = hasText || !text.IsEmpty();
    }
    return hasText ? 1 : 0;
}

void CID3Reader::KillTrailingSpaces(char* text, std::uint32_t length) {
    while (length > 0 && (text[length - 1] == ' ' || text[length - 1] == 0)) {
        text[--length] = 0;
    }
}

std::int32_t CID3Reader::SetTagString(CString const& path, char const* frameId,
                                      CString const& value, EWriteProblem* problem) {
    EWriteProblem const outcome = StoreTagString(path, frameId, value);
    if (problem != nullptr) {
        *problem = outcome;
    }
    return 1;
}
