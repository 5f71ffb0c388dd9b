// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"
#include "cli/FolderWalk.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

inline constexpr std::string_view kStandardInputName = "-"; // Standard: POSIX, guideline 13.

/// One file to be analysed, or something that can't be.
struct CInputFile {
    std::string m_sName;  // what to call it: the path as given or found, "-" for standard input
    CString m_sPath;      // where its bytes are
    std::string m_sError; // why it can't be looked at; empty: nothing known
};

/// The files that paths name, one by one in their order: a file as it is, a folder by the audio
/// files in it and below; "-" is what standard input delivers. A path that occurs twice counts
/// once. A folder that can't be read makes an item with its error. Nothing is looked at before its
/// turn.
/// Thread: one thread at a time.
class CInputWalk {
public:
    CInputWalk(std::vector<std::string> paths, CWalkOptions const& options);
    ~CInputWalk();
    CInputWalk(CInputWalk const&) = delete;
    CInputWalk& operator=(CInputWalk const&) = delete;

    /// The next file; nothing at the end, or once the user asks to stop.
    std::optional<CInputFile> Next();

    /// True once there is nothing more to come, and the user didn't cut it short.
    [[nodiscard]] bool IsAtEnd() const { return m_nNext == m_vPaths.size() && !m_folder; }

    /// Folders among the paths that were searched and hold no audio file.
    [[nodiscard]] std::vector<std::string> const& BarrenFolders() const { return m_vBarren; }

    /// Folders behind links that were passed over.
    [[nodiscard]] std::size_t LinkedFolders() const { return m_nLinkedFolders; }

private:
    std::optional<CInputFile> Take(std::string const& path);
    std::optional<CInputFile> TakeFromFolder();
    CInputFile TakeStandardInput();

    std::vector<std::string> m_vPaths;
    CWalkOptions m_options;
    std::size_t m_nNext = 0;             // the first path that hasn't been looked at
    std::optional<CFolderWalk> m_folder; // the one that is walked
    bool m_bIsBarren = true;             // nothing was found in it so far
    std::vector<std::string> m_vBarren;
    std::size_t m_nLinkedFolders = 0;
    std::unordered_set<std::string> m_known;
    int m_nStandardInput = -1; // a file without a name that holds standard input
};
