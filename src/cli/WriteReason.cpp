// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/WriteReason.h"

#include "IDTag/MacCFile.h"
#include "cli/Message.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char kTooLarge[] = "is over 4 GB";

} // namespace

std::string NotWrittenReason(EWriteProblem problem) {
    switch (problem) {
    case EWriteProblem::None:
        return {};
    case EWriteProblem::OtherExtension:
        return "only .mp3 files are written, and what --write-types names";
    case EWriteProblem::LinkTarget:
        return "it is a link to a file of another kind";
    case EWriteProblem::OtherFormat:
        return "it is an MP4 file under an MP3's name";
    case EWriteProblem::NotMpegAudio:
        return "it isn't MPEG audio";
    case EWriteProblem::OtherContent:
        return "it is in a form whose tag can't be written";
    case EWriteProblem::NotProven:
        return "something else than its tempo would have changed";
    case EWriteProblem::Damaged:
        return "too much of it is damaged";
    case EWriteProblem::EndsEarly:
        return "it ends early";
    case EWriteProblem::NotWritable:
        return "it can't be opened for writing";
    case EWriteProblem::FileTooLarge:
        return "it is over 4 GB or would become so";
    case EWriteProblem::FileSizeLimit:
        return "it would pass the limit on file sizes";
    case EWriteProblem::TagUnreadable:
        return "its tag can't be read";
    case EWriteProblem::UnknownData:
        return "its tag holds data that would be lost";
    case EWriteProblem::UnknownFrameId:
        return "its ID3v2.2 tag holds an unknown kind of frame";
    case EWriteProblem::EncodedFrames:
        return "its tag holds compressed, encrypted or grouped frames";
    case EWriteProblem::TagTooLarge:
        return "the tag would become too large";
    case EWriteProblem::InUse:
        return "another program is writing it or its new version";
    case EWriteProblem::Changed:
        return "it changed in the meantime";
    case EWriteProblem::TempoChanged:
        return "its tag got another text in the meantime";
    case EWriteProblem::NoTemporaryFile:
        return "no new file can be made beside it";
    case EWriteProblem::MayNotReplace:
        return "it may not be replaced there";
    case EWriteProblem::DiskFull:
        return "no space left on the disk";
    case EWriteProblem::NoMemory:
        return "there is not enough memory";
    case EWriteProblem::WriteFailed:
        break;
    }
    return "the disk reports an error";
}

std::string WriteReason(EWriteProblem problem) {
    return problem == EWriteProblem::None ? "" : WriteReason(NotWrittenReason(problem));
}

std::string WriteReason(std::string const& reason) {
    return "isn't written: " + reason;
}

std::string ConversionNote(std::vector<CWiderId> const& ids) {
    std::string note;
    for (CWiderId const& id : ids) {
        note += (note.empty() ? "" : ", ") + id.m_sOld + " is now " + id.m_sNew;
    }
    return note.empty() ? note : "its ID3v2.2 tag became one of version 2.3: " + note;
}

std::string OpeningReason(std::string const& path) {
    struct stat info = {};
    if (::stat(path.c_str(), &info) != 0) {
        return SystemReason(errno);
    }
    if (S_ISDIR(info.st_mode)) {
        return SystemReason(EISDIR);
    }
    if (!S_ISREG(info.st_mode) && !S_ISCHR(info.st_mode)) {
        return "is no plain file";
    }
    if (info.st_size > off_t{kLargestFileBytes}) {
        return kTooLarge;
    }
    return ::access(path.c_str(), R_OK) == 0 ? std::string() : SystemReason(errno);
}
