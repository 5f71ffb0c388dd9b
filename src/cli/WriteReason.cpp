// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/WriteReason.h"

#include <cerrno>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr off_t kLargestFileBytes = 0xFFFFFFFF; // Fixed: the tag code has 32-bit positions.
constexpr char kTooLarge[] = "is over 4 GB";

} // namespace

std::string WriteReason(EWriteProblem problem) {
    switch (problem) {
    case EWriteProblem::None:
        return {};
    case EWriteProblem::OtherExtension:
        return "isn't written: only .mp3 files are";
    case EWriteProblem::LinkTarget:
        return "isn't written: it is a link to a file of another kind";
    case EWriteProblem::OtherFormat:
        return "isn't written: it is an MP4 file under an MP3's name";
    case EWriteProblem::NotMpegAudio:
        return "isn't written: it isn't MPEG audio";
    case EWriteProblem::Damaged:
        return "isn't written: too much of it is damaged";
    case EWriteProblem::EndsEarly:
        return "isn't written: it ends early";
    case EWriteProblem::NotWritable:
        return "can't be opened for writing";
    case EWriteProblem::FileTooLarge:
        return "isn't written: it is over 4 GB or would become so";
    case EWriteProblem::FileSizeLimit:
        return "isn't written: it would pass the limit on file sizes";
    case EWriteProblem::TagUnreadable:
        return "isn't written: its tag can't be read";
    case EWriteProblem::UnknownData:
        return "isn't written: its tag holds data that would be lost";
    case EWriteProblem::UnknownFrameId:
        return "isn't written: its ID3v2.2 tag holds an unknown kind of frame";
    case EWriteProblem::EncodedFrames:
        return "isn't written: its tag holds compressed, encrypted or grouped frames";
    case EWriteProblem::TagTooLarge:
        return "isn't written: the tag would become too large";
    case EWriteProblem::InUse:
        return "isn't written: another program is writing it or its new version";
    case EWriteProblem::Changed:
        return "isn't written: it changed in the meantime";
    case EWriteProblem::TempoChanged:
        return "isn't written: its tag got another text in the meantime";
    case EWriteProblem::NoTemporaryFile:
        return "isn't written: no new file can be made beside it";
    case EWriteProblem::MayNotReplace:
        return "isn't written: it may not be replaced there";
    case EWriteProblem::DiskFull:
        return "isn't written: no space left on the disk";
    case EWriteProblem::NoMemory:
        return "isn't written: there is not enough memory";
    case EWriteProblem::WriteFailed:
        break;
    }
    return "isn't written: the disk reports an error";
}

std::string OpeningReason(std::string const& path) {
    struct stat info = {};
    if (::stat(path.c_str(), &info) != 0) {
        return std::generic_category().message(errno);
    }
    if (S_ISDIR(info.st_mode)) {
        return std::generic_category().message(EISDIR);
    }
    if (!S_ISREG(info.st_mode) && !S_ISCHR(info.st_mode)) {
        return "is no plain file";
    }
    if (info.st_size > kLargestFileBytes) {
        return kTooLarge;
    }
    return ::access(path.c_str(), R_OK) == 0 ? std::string()
                                             : std::generic_category().message(errno);
}
