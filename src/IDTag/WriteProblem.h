// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// Why a tag was not written. In every case but `None` the file is as it was before, its name
/// included. The words for a person are made by the programs.
enum class EWriteProblem {
    None,
    OtherExtension,  // only files that end in ".mp3" are written
    LinkTarget,      // the name is a link to a file of another extension
    OtherFormat,     // an MP4 file under an MP3's name: a tag before it would shift its samples
    NotMpegAudio,    // it wasn't read as MPEG audio, or has no MPEG frames behind its tag
    OtherContent,    // what it holds isn't of its name's kind, or in a form that can't be written
    NotProven,       // the new version's audio or further items would not be what they were
    Damaged,         // 1 % of its packets or more can't be decoded
    EndsEarly,       // more than 2 % of what its header promises is missing
    NotWritable,     // missing, no plain file, or no permission
    FileTooLarge,    // over 4 GB, or it would become so
    FileSizeLimit,   // it would pass the limit on the files of this process
    TagUnreadable,   // the tag claims more bytes than there are, or can't be read
    UnknownData,     // bytes behind the frames that a new tag would throw away
    UnknownFrameId,  // a version 2.2 tag with a frame that has no name in version 2.3
    EncodedFrames,   // version 2.4 frames in a form that version 2.3 can't tell
    TagTooLarge,     // the new tag would need 2^28 bytes or more, or over 65,536 frames
    InUse,           // another process is writing this file or one of the same base name
    Changed,         // the file is no longer the one that was read
    TempoChanged,    // the frame's text is no longer the one that was read
    NoTemporaryFile, // the new file can't be made beside the old one
    MayNotReplace,   // nothing may take the file's place there, or not with all its marks
    DiskFull,
    NoMemory,
    WriteFailed, // any other error of the disk
};

/// Number of the values above, for those who go through them all.
constexpr int kWriteProblems = static_cast<int>(EWriteProblem::WriteFailed) + 1;
