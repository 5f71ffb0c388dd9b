// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

#include <utility>

/// One file of the list: its path, and what is known about it. Notifications carry its address.
/// Thread: one thread at a time.
class CBPMFile {
public:
    /// `path` keeps any bytes when it comes from `CString::FromPath`.
    explicit CBPMFile(CString path) : m_sPath(std::move(path)) {}
    CBPMFile(CBPMFile const&) = delete;
    CBPMFile& operator=(CBPMFile const&) = delete;

    [[nodiscard]] CString const& GetPath() const { return m_sPath; }

    /// Done: it has a tempo, from its tag or from an analysis.
    [[nodiscard]] bool IsDone() const { return m_bDone; }
    void SetDone(bool isDone) { m_bDone = isDone; }

    [[nodiscard]] CString const& GetTitle() const { return m_sTitle; }
    void SetTitle(CString const& title) { m_sTitle = title; }
    [[nodiscard]] CString const& GetArtist() const { return m_sArtist; }
    void SetArtist(CString const& artist) { m_sArtist = artist; }
    [[nodiscard]] CString const& GetTempo() const { return m_sTempo; }
    void SetTempo(CString const& tempo) { m_sTempo = tempo; }

private:
    CString const m_sPath;
    bool m_bDone = false;
    CString m_sTitle;
    CString m_sArtist;
    CString m_sTempo;
};
