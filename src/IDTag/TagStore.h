// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Tag.h"
#include "IDTag/TagWitness.h"
#include "IDTag/WriteProblem.h"
#include "base/CString.h"
#include "base/FileIdentity.h"

#include <cstdint>
#include <optional>
#include <vector>

/// How the programs read and write one text of a tag: with care for files that stand beside
/// `CID3Reader`, which keeps to its own rules. No tag ends the process here, and nothing throws.
/// Thread: any.

/// What must hold for a text to be written. As it is made, it asks for little; each program says
/// what it knows.
struct CTagStoreOptions {
    /// The file that was decoded, in its state at that time.
    std::optional<CFileIdentity> m_expected;

    /// The frame's text as it was shown to whoever wants it replaced; empty for no such frame.
    std::optional<CString> m_expectedText;

    /// Frames marked to be dropped when the file is altered stay.
    bool m_bKeepMarked = true;

    /// Version 2.2 ids that only players know are converted too.
    bool m_bWiderIds = true;

    /// A version 2.4 tag is written as version 2.4.
    bool m_bKeepVersion = false;

    /// MPEG frames must follow the tag: for those who haven't decoded the file.
    bool m_bNeedsMpegChain = false;

    /// The file's time of the last write stays.
    bool m_bKeepTime = false;

    /// Told of the write; null for nobody.
    ITagWitness* m_pWitness = nullptr;
};

/// What there is to tell of one write.
struct CTagStoreReport {
    bool m_bWritten = false;            // false also when the text stood there already
    std::uint8_t m_nVersionBefore = 0;  // major version of the tag that was there; 0 for none
    CString m_sTextBefore;              // up to its first 0; empty for none
    std::vector<CWiderId> m_vConverted; // version 2.2 ids that only players know
    CFileIdentity m_after;              // of the file after a write
};

/// Writes one text frame into the MP3 file at `path`, whose tag is read anew for it. A symbolic
/// link's target must end in ".mp3" too. The file that was looked at, and the one that is written
/// under a lock, are one and in one state.
/// Returns: `None` also when the text stands there already.
EWriteProblem StoreTagText(CString const& path, char const* frameId, CString const& text,
                           CTagStoreOptions const& options, CTagStoreReport* report = nullptr);

/// Takes one text frame out of the tag again. Everything else is as for a text.
/// Returns: `None` also when there was no such frame.
EWriteProblem TakeOutTagText(CString const& path, char const* frameId,
                             CTagStoreOptions const& options, CTagStoreReport* report = nullptr);

/// The frame's text up to its first 0, as `CID3Frame::GetString` has it, but for text that its
/// encoding byte calls UTF-8: that is decoded if it is.
/// Returns: a failure, `text` untouched, when there is none.
CStatus FrameTextOf(CID3Frame& frame, CString& text);

/// Text of one frame, up to its first 0, of a tag that was opened. Version 2.4 frames that tell the
/// length of their data are read past it.
/// Returns: `kStatusNothing`, `text` untouched, when there is no such frame or no text in it.
CStatus TagTextOf(CID3Tag const& tag, char const* frameId, CString& text);

/// Text of one frame, up to its first 0, of the ID3v2 tag alone. Version 2.4 frames that tell the
/// length of their data are read past it, and ids of version 2.2 by the wider table.
/// Returns: `kStatusOk`; `kStatusNothing` when there is no such frame or no text in it;
/// `kStatusFailure` when the tag can't be read.
CStatus ReadTagText(CString const& path, char const* frameId, CString& text);
