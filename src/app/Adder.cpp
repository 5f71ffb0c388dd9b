// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/Adder.h"

#include "app/RowTags.h"
#include "base/FileIdentity.h"
#include "base/FileManager.h"
#include "base/FileUtil.h"
#include "song/AudioKinds.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace {

constexpr std::array<char const*, 3> kChoosableTypes{"wav", "mp3", "aiff"}; // Fixed: open panel.

/// A file that can be heard, by its name. What systems put beside music ("._song.flac") is none.
bool IsOtherKind(CFileEntry const& entry) {
    CString name;
    CFileUtil::ExtractFileName(entry.m_sPath, name);
    return !entry.m_bIsDirectory && !name.ToUtf8().starts_with('.') &&
           FindAudioKind(entry.m_sPath) != nullptr;
}

} // namespace

CAdder::CAdder(CFileList& list, CBatch& batch, IBpmView& view)
    : m_list(list), m_batch(batch), m_view(view), m_sSupportedExts(ListedExtensions()) {
}

CWishes CAdder::Wishes() const {
    auto const guard = m_list.Lock();
    return m_list.Wishes();
}

// Deliberate: an extension is looked for anywhere in the joined list, so that "if" and "m4" pass
// as well. A name without an extension doesn't.
bool CAdder::IsSupported(CString const& path) const {
    CString extension;
    if (CFileUtil::GetLowerCaseFileExt(path, extension) != kStatusOk || extension.IsEmpty()) {
        return false;
    }
    return m_sSupportedExts.Find(extension) >= 0;
}

bool CAdder::ShouldShow(CString const& path) const {
    return CFileManager::IsDirectory(path) || IsSupported(path) ||
           (Wishes().m_bOtherKinds && FindAudioKind(path) != nullptr);
}

bool CAdder::CanChoose(CString const& path) const {
    if (CFileManager::IsDirectory(path)) {
        return true;
    }
    if (Wishes().m_bOtherKinds) {
        return FindAudioKind(path) != nullptr;
    }
    CString extension;
    return CFileUtil::GetLowerCaseFileExt(path, extension) == kStatusOk &&
           std::any_of(kChoosableTypes.begin(), kChoosableTypes.end(),
                       [&](char const* type) { return extension == type; });
}

CAdder::CToken CAdder::Token() const {
    auto const guard = m_list.Lock();
    return m_pToken;
}

void CAdder::Add(CString const& path) {
    AddPath(path, *Token());
}

void CAdder::AddFile(CString const& path) {
    AddFile(path, *Token());
}

void CAdder::ListFiles(std::vector<CString>& list, CString const& directory) {
    ListFiles(list, directory, *Token());
}

void CAdder::AddPath(CString const& path, CCancelFlag const& unwanted) {
    if (!CFileManager::IsDirectory(path)) {
        AddFile(path, unwanted);
        return;
    }
    std::vector<CString> files;
    ListFiles(files, path, unwanted);
    for (CString const& file : files) {
        if (unwanted.IsSet()) {
            return;
        }
        AddFile(file, unwanted);
    }
}

void CAdder::ListFiles(std::vector<CString>& list, CString const& directory,
                       CCancelFlag const& unwanted) {
    bool const takesOthers = Wishes().m_bOtherKinds;
    CFileManager::Enumerate(
        directory,
        [&](CFileEntry const& entry) {
            bool const isOther = !IsSupported(entry.m_sPath);
            if (!isOther || (takesOthers && IsOtherKind(entry))) {
                list.push_back(entry.m_sPath);
            } else if (IsOtherKind(entry)) {
                NoteLeftOut(entry.m_sPath);
            }
            return !unwanted.IsSet();
        },
        [this](CString const& folder, std::error_code) { NoteUnreadFolder(folder); });
}

void CAdder::NoteLeftOut(CString const& path) {
    auto const guard = m_list.Lock();
    if (m_vLeftOutPaths.emplace(path.Units()).second) {
        m_vLeftOut.push_back(path);
        ++m_list.Counts().m_nLeftOut;
    }
}

std::vector<CString> CAdder::TakeLeftOut() {
    auto const guard = m_list.Lock();
    m_vLeftOutPaths.clear();
    m_list.Counts().m_nLeftOut = 0;
    return std::exchange(m_vLeftOut, {});
}

std::vector<CString> CAdder::UnreadFolders() const {
    auto const guard = m_list.Lock();
    return m_vUnreadFolders;
}

void CAdder::NoteUnreadFolder(CString const& folder) {
    {
        auto const guard = m_list.Lock();
        m_vUnreadFolders.push_back(folder);
        ++m_list.Counts().m_nUnreadFolders;
        m_list.Counts().m_sUnreadFolder = folder.Units();
    }
    m_view.statusChanged();
}

// The path is taken first and the row appended when its tags are read, so that the lock is free
// meanwhile and a path that comes in twice is still read once.
void CAdder::AddFile(CString const& path, CCancelFlag const& unwanted) {
    {
        auto const guard = m_list.Lock();
        if (m_bEnded || unwanted.IsSet()) {
            return;
        }
        if (!m_list.TakePath(path)) {
            m_batch.NoteKnown(m_list.RowOfPath(path));
            return;
        }
    }
    try {
        AppendRow(path);
    } catch (std::bad_alloc const&) {
        auto const guard = m_list.Lock();
        m_list.DropPath(path);
        throw;
    }
    m_view.rowsAdded();
}

void CAdder::AppendRow(CString const& path) {
    auto row = std::make_unique<CListRow>(path);
    row->m_identity = IdentityAt(path.ToPath());
    row->m_sTempoInTag = ReadRowTags(row->m_file, Wishes());
    row->m_bFromTag = row->m_file.IsDone();
    auto const guard = m_list.Lock();
    m_batch.Append(std::move(row));
}

/// Without memory a path is left out, which is told, and the next one may have more luck.
void CAdder::TryToAdd(CString const& path, CCancelFlag const& unwanted) {
    try {
        AddPath(path, unwanted);
    } catch (std::bad_alloc const&) {
        NoteUnreadFolder(path);
    }
}

void CAdder::AddInBackground(std::vector<CString> paths) {
    CToken token;
    {
        auto const guard = m_list.Lock();
        if (m_bEnded) {
            return;
        }
        token = m_pToken;
        ++m_nJobs;
    }
    m_view.statusChanged();
    CString const first = paths.empty() ? CString() : paths.front();
    bool const isTaken = m_queue.Post([this, token, paths = std::move(paths)] {
        for (CString const& path : paths) {
            if (token->IsSet()) {
                break;
            }
            TryToAdd(path, *token);
        }
        EndJob(*token);
    });
    if (!isTaken) {
        NoteUnreadFolder(first);
        EndJob(*token);
    }
}

// A stop that came in meanwhile keeps the batch from starting.
void CAdder::EndJob(CCancelFlag const& unwanted) {
    {
        auto const guard = m_list.Lock();
        --m_nJobs;
        if (!unwanted.IsSet()) {
            m_batch.Go();
        }
    }
    m_view.statusChanged();
}

void CAdder::Stop() {
    auto const guard = m_list.Lock();
    Renew();
}

// With the lock held.
void CAdder::Renew() {
    m_pToken->Set();
    m_pToken = std::make_shared<CCancelFlag>();
    m_vLeftOut.clear();
    m_vLeftOutPaths.clear();
    m_list.Counts().m_nLeftOut = 0;
}

void CAdder::End() {
    {
        auto const guard = m_list.Lock();
        m_bEnded = true;
        Renew();
    }
    m_queue.End();
}
