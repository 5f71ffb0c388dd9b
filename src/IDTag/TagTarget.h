// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/PosixFile.h"
#include "base/CString.h"
#include "base/FileIdentity.h"

#include <cstdint>
#include <optional>
#include <string>

/// The file itself: `path`, or what the symbolic link there leads to.
CString FileBehind(CString const& path);

/// True for the files that tags are written into, *.mp3 in any case.
bool HasWrittenExtension(CString const& path);

/// Where the new file is built that takes the place of the one at `path`: song.MP~ for song.mp3.
CString TemporaryPathBeside(CString const& path);

/// The file that a tag is written into, locked, and watched from the lock to the last byte: whoever
/// doesn't ask for locks is found out by the file's times.
class CTagTarget {
public:
    explicit CTagTarget(CString const& path) : m_sPath(FileBehind(path)) {}

    /// True when the file's rights let this user write it.
    [[nodiscard]] bool MayBeWritten() const;

    /// Opens and locks the file, and waits until every further change would show in its times.
    /// Returns: `Changed` when it isn't `expected`, if that is given, or when the path names
    /// another file meanwhile.
    EWriteProblem Open(std::optional<CFileIdentity> const& expected);

    /// Opens it once more, for a write in place.
    EWriteProblem OpenForWriting();

    /// None as long as nobody has changed the file since `Open`, or given its name away.
    [[nodiscard]] EWriteProblem LookAgain() const;

    /// Gone with this object.
    [[nodiscard]] int Get() const { return m_file.Get(); }
    [[nodiscard]] int GetForWriting() const { return m_writer.Get(); }

    [[nodiscard]] CString const& GetPath() const { return m_sPath; }
    [[nodiscard]] CFileIdentity const& GetIdentity() const { return m_identity; }

private:
    EWriteProblem Lock();
    [[nodiscard]] bool IsNamed() const;

    CString m_sPath;
    CDescriptor m_file;
    CDescriptor m_writer;
    CFileIdentity m_identity;
};
