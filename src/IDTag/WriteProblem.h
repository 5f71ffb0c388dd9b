// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// Why a tag was not written. In every case but `None` the file is as it was before, its name
/// included. The words for a person are made by the programs.
enum class EWriteProblem {
    None,
    OtherExtension,  // only files that end in ".mp3" are written
    OtherFormat,     // an MP4 file under an MP3's name: a tag before it would shift its samples
    NotWritable,     // missing, no plain file, or no permission
    FileTooLarge,    // over 4 GB, or it would become so
    TagUnreadable,   // the tag claims more bytes than there are, or can't be read
    UnknownData,     // bytes behind the frames that a new tag would throw away
    UnknownFrameId,  // a version 2.2 tag with a frame that has no name in version 2.3
    TagTooLarge,     // the new tag would need 2^28 bytes or more
    InUse,           // another process is writing this file or one of the same base name
    Changed,         // the file is no longer the one that was read
    NoTemporaryFile, // the new file can't be made beside the old one
    DiskFull,
    WriteFailed, // any other error of the disk
};
