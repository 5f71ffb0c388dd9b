// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/MacCFile.h"
#include "IDTag/WriteProblem.h"
#include "base/CString.h"

#include <cstddef>
#include <cstdint>

/// The door through which programs read one piece of metadata from an audio file and write one
/// text frame back. Answers are 1 for yes and 0 for no. A `CFileException*` thrown by a closed file
/// passes through.
/// Thread: any; a `CFile` is used by one thread at a time.
class CID3Reader {
public:
    /// Asks the ID3v2 tag, then the ID3v1 trailer, then the private trailer for the frame `frameId`
    /// ("TIT2", "TPE1", "TBPM"), until one of them says 1. `file` is an open audio file.
    /// Returns: 1 when one did. `value` may have changed although the result is 0.
    static std::int32_t ImportMetaData(CFile* file, char const* frameId, CString& value);

    static std::int32_t ImportID3v2MetaData(CFile* file, char const* frameId, CString& value);

    /// Returns: 1 when title, artist or album is non-empty, whatever was asked for.
    static std::int32_t ImportID3v1MetaData(CFile* file, char const* frameId, CString& value);

    /// Returns: 1 when the private trailer is there with a non-empty text; nothing is handed out.
    static std::int32_t ImportVeltoMetaData(CFile* file);

    /// Replaces spaces by 0 from the last byte backwards, passing over 0, up to the first byte that
    /// is neither.
    static void KillTrailingSpaces(char* text, std::uint32_t length);

    /// Writes one text frame into a file that ends in ".mp3", in either case. A file is left alone
    /// when its tag holds bytes that couldn't be reached, and when it is an MP4 file all the same.
    /// Returns: 1 always; `*problem`, which may be null, says what kept the text from being
    /// stored, `None` also when it stood there already.
    static std::int32_t SetTagString(CString const& path, char const* frameId, CString const& value,
                                     EWriteProblem* problem = nullptr);
};
