// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/TagWitness.h"
#include "IDTag/WriteProblem.h"
#include "base/CString.h"
#include "base/FileIdentity.h"
#include "platform/TagChange.h"

#include <cstdint>
#include <optional>
#include <string>

struct CAudioKind;

/// What must hold for a tag to be written.
struct CLibraryStoreOptions {
    /// The file that was decoded, in its state at that time.
    std::optional<CFileIdentity> m_expected = {};

    /// The tempo's text when its row was read; with it, one that somebody has set since stays.
    std::optional<std::string> m_tempoBefore = {};

    /// What the file's time of the last write becomes, in nanoseconds since the epoch; nothing:
    /// the present.
    std::optional<std::int64_t> m_writtenTime = {};

    /// Told of the write, as one of the frame TBPM whatever the kind; null for nobody. Where the
    /// file's changed bytes are few and at its front, they are told as its tag.
    ITagWitness* m_pWitness = nullptr;
};

/// Writes into the tag of a file that isn't MP3, whose extension is `kind`'s: TagLib changes a
/// private copy, which takes the original's place in one rename, locked and watched like an MP3
/// file's new version. Before that it is proven that every audio packet and every other item of the
/// tag is what it was, and that the wish can be read back; otherwise the original stays.
/// Returns: `None` also when everything stands there already; no byte is written then.
/// Thread: any.
EWriteProblem StoreByLibrary(CString const& path, CAudioKind const& kind, CTagWish const& wish,
                             CLibraryStoreOptions const& options);
