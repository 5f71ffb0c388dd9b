// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

#include <functional>
#include <system_error>

/// One thing that a folder holds.
struct CFileEntry {
    CString m_sPath; // the folder's path joined with the names below it
    bool m_bIsDirectory = false;
};

/// The host's file system. Paths are byte-exact: any name that the file system holds works when it
/// came through `CString::FromPath`. Questions follow symbolic links; changes don't.
/// Thread: any.
class CFileManager {
public:
    /// Called for every entry. Returns: false to end the walk.
    using EntryVisitor = std::function<bool(CFileEntry const& entry)>;

    /// Called for every folder that can't be read, or not to its end. The walk goes on.
    using ErrorVisitor = std::function<void(CString const& folder, std::error_code error)>;

    /// True when something is there; false also when nobody may look.
    [[nodiscard]] static bool Exists(CString const& path);
    [[nodiscard]] static bool IsDirectory(CString const& path);

    /// Walks everything below `folder`, hidden names too, in one order on every run: the names of
    /// a folder by their bytes, a folder before what it holds. A link to a folder below `folder`
    /// is listed as no directory and not entered, so that no cycle can arise.
    static void Enumerate(CString const& folder, EntryVisitor const& visit,
                          ErrorVisitor const& fail = nullptr);

    /// Removes a file, a link or an empty folder.
    static std::error_code Remove(CString const& path);

    /// Gives `from` the name `to` in one step. A file of that name is replaced.
    static std::error_code Rename(CString const& from, CString const& to);

    /// Creates one folder, whose parent must exist. One that is there already is no error.
    static std::error_code CreateDirectory(CString const& path);
};
