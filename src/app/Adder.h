// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Batch.h"
#include "app/WorkQueue.h"
#include "base/CancelFlag.h"

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

/// Brings files into the list. Folders are walked and tags read on a worker of its own, one path
/// after the other; the batch starts when all paths of one call are in. A stop ends every addition
/// of its past, wherever that stands.
/// Thread: any, but for `End`.
class CAdder {
public:
    /// All must outlive it.
    CAdder(CFileList& list, CBatch& batch, IBpmView& view);
    CAdder(CAdder const&) = delete;
    CAdder& operator=(CAdder const&) = delete;
    ~CAdder() { End(); }

    /// Adds `paths` on the worker, in their order, then starts the batch; returns at once.
    void AddInBackground(std::vector<CString> paths);

    /// Adds one file, or every matching file below a folder, reading tags as it goes.
    void Add(CString const& path);

    /// Adds one row; a path that is in the list already only counts as known.
    void AddFile(CString const& path);

    /// Appends the matching entries below `directory`, in the order found.
    void ListFiles(std::vector<CString>& list, CString const& directory);

    /// Does the open panel list this entry? Folders always; a file when its extension is found in
    /// the joined list of supported extensions, ignoring case.
    [[nodiscard]] bool ShouldShow(CString const& path) const;

    /// May this entry be chosen in the open panel? Folders always; files of three types, or of any
    /// when all are wished for.
    [[nodiscard]] bool CanChoose(CString const& path) const;

    /// Files of other kinds that were found below folders and left out, in the order found, each
    /// once. A stop forgets them. They are handed over.
    [[nodiscard]] std::vector<CString> TakeLeftOut();

    /// Folders that could not be read so far, in the order met.
    [[nodiscard]] std::vector<CString> UnreadFolders() const;

    void Stop();

    /// Ends what runs and takes nothing more. May be called twice. Thread: not a worker.
    void End();

    /// True while paths are looked through. With the list's lock held.
    [[nodiscard]] bool IsBusy() const { return m_nJobs > 0; }

private:
    /// Set when nobody wants any more what an addition brings.
    using CToken = std::shared_ptr<CCancelFlag>;

    [[nodiscard]] CToken Token() const;
    void Renew();
    void AddPath(CString const& path, CCancelFlag const& unwanted);
    void AddFile(CString const& path, CCancelFlag const& unwanted);
    void ListFiles(std::vector<CString>& list, CString const& directory,
                   CCancelFlag const& unwanted);
    void AppendRow(CString const& path);
    void TryToAdd(CString const& path, CCancelFlag const& unwanted);
    void EndJob(CCancelFlag const& unwanted);
    void NoteUnreadFolder(CString const& folder);
    void NoteLeftOut(CString const& path);
    [[nodiscard]] bool IsSupported(CString const& path) const;
    [[nodiscard]] CWishes Wishes() const;

    CFileList& m_list;
    CBatch& m_batch;
    IBpmView& m_view;
    CString const m_sSupportedExts;

    // Guarded by the list's lock.
    CToken m_pToken = std::make_shared<CCancelFlag>(); // of what is added from now on
    std::size_t m_nJobs = 0;
    std::vector<CString> m_vUnreadFolders;
    std::vector<CString> m_vLeftOut;
    std::unordered_set<std::u16string> m_vLeftOutPaths; // the same, to be found
    bool m_bEnded = false;

    CWorkQueue m_queue;
};
