// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/AudioKinds.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

/// What a search of folders takes in.
struct CWalkOptions {
    bool m_bSearches = true;                 // look into folders at all
    bool m_bHidden = false;                  // also what systems put beside music: see `IsLeftOut`
    bool m_bFollows = false;                 // also folders behind links
    std::optional<CKindChoice> m_types = {}; // only these kinds; nothing: all that are read

    /// Patterns of the shell for what is left out. One without a slash is held against names, any
    /// other against paths below the folder that is searched, where * stands for slashes too. One
    /// with a slash at its end is for folders alone.
    std::vector<std::string> m_vExcluded = {};
};

/// An audio file that was found, or a folder that can't be read.
struct CWalkItem {
    std::string m_sPath;
    std::error_code m_error; // why the folder can't be read; none: a file
};

/// Walks the audio files below a folder one by one, in one order on every run: the names of a
/// folder by their bytes, those below a folder in its place. A folder is read when its turn comes.
/// Thread: one thread at a time.
class CFolderWalk {
public:
    CFolderWalk(std::string const& folder, CWalkOptions const& options);

    /// The next item; nothing at the end, or once the user asks to stop.
    std::optional<CWalkItem> Next();

    /// Folders behind links that were passed over so far.
    [[nodiscard]] std::size_t LinkedFolders() const { return m_nLinkedFolders; }

private:
    struct CFound {
        std::string m_sPath;
        bool m_bIsFolder;
    };

    void Enter(std::string const& folder);
    std::error_code ReadFolder(std::string const& folder, std::vector<CFound>& found);
    bool IsFirstVisit(std::string const& folder);
    [[nodiscard]] bool IsWanted(std::string_view name) const;
    [[nodiscard]] bool IsExcluded(std::string const& path, bool isFolder) const;

    CWalkOptions m_options;
    std::size_t m_nRootBytes; // of the searched folder's path with a slash behind it
    std::size_t m_nLinkedFolders = 0;
    std::optional<CWalkItem> m_failure;
    std::vector<CFound> m_vPending;                              // the next one is at the back
    std::set<std::pair<std::uint64_t, std::uint64_t>> m_visited; // device and inode of folders
};

/// True when `path` ends in the extension of a kind that is read, in either case.
bool HasAudioExtension(std::string_view path);

/// True for names that systems and servers use beside people's files: companions that hold
/// attributes ("._x"), bins, snapshots, thumbnails, what a check of the disk found.
bool IsLeftOut(std::string_view name);
