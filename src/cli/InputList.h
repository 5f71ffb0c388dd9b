// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

#include <string>
#include <string_view>
#include <vector>

inline constexpr std::string_view kStandardInputName = "-"; // Standard: POSIX, guideline 13.

/// One file to be analysed, or something that can't be.
struct CInputFile {
    std::string m_sName;  // what to call it: the path as given or found, "-" for standard input
    CString m_sPath;      // where its bytes are
    std::string m_sError; // why it can't be looked at; empty: nothing known
};

/// The files that `paths` name, in their order: a file as it is, a folder by what lies in it and
/// below, sorted by bytes, as far as the extension is one of audio; "-" is what standard input
/// delivers. A path that occurs twice counts once. A folder that can't be read makes an entry with
/// its error.
class CInputList {
public:
    /// What becomes of a path that names a folder: the files below it, or an entry like a file.
    enum class EFolders { Search, Keep };

    explicit CInputList(std::vector<std::string> const& paths, EFolders folders = EFolders::Search);
    ~CInputList();
    CInputList(CInputList const&) = delete;
    CInputList& operator=(CInputList const&) = delete;

    [[nodiscard]] std::vector<CInputFile> const& Files() const { return m_vFiles; }

private:
    void AddFolder(std::string const& path);
    void AddStandardInput();

    std::vector<CInputFile> m_vFiles;
    int m_nStandardInput = -1; // a file without a name that holds standard input
};

/// True when the extension of `path` is found, ignoring case, in the joined list of extensions.
bool HasAudioExtension(CString const& path);
