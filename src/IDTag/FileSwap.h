// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/PosixFile.h"
#include "base/FileIdentity.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// Builds a new version of a file under a temporary name in the same folder and puts it in the old
/// one's place in one step, so that at every moment the name holds one whole file, also when the
/// process is killed or the disk is full.
///
/// The temporary name is shared: by every process that writes this file, and by files that differ
/// in the extension only. Who holds the lock on the temporary file builds; the others fail. Names
/// are made, taken over and swapped under a lock on the folder, so that nobody removes or swaps
/// another one's file.
class CFileSwap {
public:
    /// `old` is the file at `path`, which is no symbolic link, open for reading alone; `state` is
    /// what must still be true of it when the new file takes its place.
    CFileSwap(int old, CFileIdentity const& state, std::string const& path,
              std::string const& temporaryPath);

    /// Removes the temporary file unless it has taken the old one's place. Where names can't be
    /// removed, an empty file stays.
    ~CFileSwap();
    CFileSwap(CFileSwap const&) = delete;
    CFileSwap& operator=(CFileSwap const&) = delete;

    /// What the new file's time of the last write becomes, in nanoseconds since the epoch; nothing:
    /// the present.
    void SetWrittenTime(std::optional<std::int64_t> time) { m_writtenTime = time; }

    /// Makes or takes over the temporary file, locked and empty. A link, a device or a fifo under
    /// its name is removed, never written to; a folder there is left alone and fails. Nothing is
    /// made while somebody has the old file open for writing, whose further bytes would be lost,
    /// or where it can be foreseen that the new file may not take its place.
    EWriteProblem Begin();

    /// Appends to the new file.
    EWriteProblem Write(std::span<std::uint8_t const> bytes);

    /// Appends the old file's bytes from `offset` on; none when it is no longer than that.
    EWriteProblem CopyRest(std::uint64_t offset);

    /// The new file, for whoever changes it after its bytes were copied; gone with this object.
    [[nodiscard]] int Get() const { return m_temporary.Get(); }

    /// Takes the new file as it is by now.
    EWriteProblem TakeOver();

    /// Carries mode, owner and attributes over, brings everything to the disk, checks it, and
    /// gives the new file the old one's name.
    EWriteProblem Commit();

private:
    EWriteProblem LookAround() const;
    std::optional<EWriteProblem> TryToBegin();
    void GiveUpSecondName();
    bool IsAbandoned() const;
    EWriteProblem ClearName();
    bool OpenTemporary(bool* isNew);
    bool IsOurs(bool isNew) const;
    bool IsNameOf(std::string const& name, int file) const;
    EWriteProblem Finish();

    int m_nOld;
    std::string m_sName;
    std::string m_sTemporaryName;
    CDescriptor m_folder;
    CDescriptor m_temporary;
    CFileIdentity m_state;
    std::uint64_t m_nWritten = 0;
    std::optional<std::int64_t> m_writtenTime;
    bool m_bRemove = false;
};
