// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BPMFile.h"
#include "app/BpmView.h"
#include "app/FileAnalyzer.h"
#include "app/WorkQueue.h"
#include "base/CString.h"
#include "base/NotificationCenter.h"
#include "records/Journal.h"
#include "records/Places.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

enum class EDropOperation { None, Copy };

/// Where a drop would go: in front of `m_nRow`, as a copy, or nowhere.
struct CDropAnswer {
    EDropOperation m_operation = EDropOperation::None;
    std::int64_t m_nRow = 0;
};

/// The file list and the batch that works through it, without any toolkit. Rows are appended and
/// never removed. Files and folders come in on a worker of its own; each file is analysed on the
/// analyser's worker, whose notifications are handled there. Rows, flags and counts are guarded by
/// one lock, which is never held while a file is read or written.
/// Thread: every operation is safe from any thread unless it says otherwise.
class BPMController : public IFileList {
public:
    /// `view` must outlive the controller; `awakeFromNib` must follow.
    explicit BPMController(IBpmView& view);
    ~BPMController() override;
    BPMController(BPMController const&) = delete;
    BPMController& operator=(BPMController const&) = delete;

    /// Subscribes to the three notifications of the analysis.
    void awakeFromNib();

    /// Adds what the open panel returned, then analyses; returns at once.
    void openFile(std::vector<CString> paths);

    /// Does the open panel list this entry? Folders always; a file when its extension is found in
    /// the joined list of supported extensions, ignoring case.
    [[nodiscard]] bool panelShouldShowFilename(CString const& path) const;

    /// May this entry be chosen in the open panel? Folders always; files of three types.
    [[nodiscard]] bool panelCanChooseFilename(CString const& path) const;

    /// Adds one file, or every matching file below a folder, reading tags as it goes.
    void add(CString const& path);

    /// Appends the matching entries below `directory`, in the order found. Ends early when the
    /// batch is stopped.
    void BuildFileListFromPath(std::vector<CString>& list, CString const& directory);

    /// Adds one row; a path that is in the list already is ignored.
    void addFile(CString const& path);

    /// Starts the first row without a tempo unless a file is being analysed.
    void analyze();

    /// Takes every row as not done and analyses.
    void reScan();

    /// Hides rows, or brings them back: hidden ones are neither shown nor analysed, the running one
    /// is given up. They stay in the list, and no file is touched.
    void setHidden(std::vector<std::size_t> const& rows, bool isHidden);

    /// Ends the batch and whatever is still being added. The running file keeps what it had.
    void stop();

    void onProfilerFileProgress(CUserInfo const* userInfo);
    void onFileComplete(CUserInfo const* userInfo);
    void onAnalysisComplete(CUserInfo const* userInfo);

    [[nodiscard]] std::size_t numberOfRowsInTableView() const override;
    [[nodiscard]] std::u16string objectValueForTableColumn(std::int32_t column,
                                                           std::size_t row) const override;
    [[nodiscard]] CRowState rowState(std::size_t row) const override;
    [[nodiscard]] CBatchStatus status() const override;

    /// A drag of file names is taken as a copy in front of the proposed row, any other refused.
    [[nodiscard]] CDropAnswer validateDrop(bool offersFileNames, std::int64_t proposedRow) const;

    /// Adds the dropped paths in order, then analyses; returns at once.
    /// Returns: true.
    bool acceptDrop(std::vector<CString> paths);

    void onHelp();

    [[nodiscard]] bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }
    [[nodiscard]] bool applicationShouldTerminate() const { return true; }

    /// Ends everything: unsubscribes, cancels the running file, waits for its worker, which
    /// finishes a tag that it is writing, and frees the rows. May be called twice.
    /// Thread: not a worker.
    void applicationWillTerminate();

    /// The file of a row; null past the end.
    [[nodiscard]] CBPMFile* fileAtRow(std::size_t row) const;

private:
    struct CRow;

    static constexpr std::size_t kNoRow = static_cast<std::size_t>(-1); // Fixed: no such index.

    [[nodiscard]] CRow* rowOf(CUserInfo const* userInfo) const;
    void startNext();
    [[nodiscard]] static bool isToDo(CRow const& row);
    void setRowHidden(std::size_t index, bool isHidden);
    void noteKnownRow(std::size_t index);
    void restoreRunningRow();
    void giveUpRunningRow();
    [[nodiscard]] CAnalysisOutcome outcomeOf(CRow const& row) const;
    void setOutcome(CRow& row, CAnalysisOutcome outcome);
    void noteProblem(CRow const& row);
    void storeTempo(CRow& row);
    [[nodiscard]] bool hasSupportedExtension(CString const& path) const;
    void addInBackground(std::vector<CString> paths);
    void addPath(CString const& path, std::uint64_t generation);
    void endAdding(std::uint64_t generation);
    void noteUnreadFolder(CString const& folder);
    [[nodiscard]] bool isWanted(std::uint64_t generation) const;

    IBpmView& m_view;
    CJournal m_journal{StateFolder()}; // a batch of files is a batch there
    CString const m_sSupportedExts;

    mutable std::mutex m_lock; // Guards everything down to m_bTerminated.
    std::vector<std::unique_ptr<CRow>> m_vFiles;
    std::unordered_map<CBPMFile const*, std::size_t> m_vIndexes;
    std::unordered_map<std::u16string, std::size_t>
        m_vPaths;                   // To its row; kNoRow until it has one.
    std::size_t m_nFirstUndone = 0; // No row in front of it is undone.
    std::size_t m_nRunningRow = kNoRow;
    CString m_sTempoBefore; // What the running row showed before it was started.
    CBatchStatus m_status;  // Counts and flags; texts of the running row are filled in on demand.
    bool m_bAnalysisInProgress = false;
    bool m_bPercentSeen = false;  // The running row has been told how far it is.
    bool m_bBatchStopped = false; // The chain must not go on.
    bool m_bRunCancelled = false; // Results of the running file are void.
    std::size_t m_nAddJobs = 0;
    bool m_bTerminated = false;

    std::atomic<std::uint64_t> m_nAddGeneration{0}; // A stop ends the additions of its past.
    std::unique_ptr<CFileAnalyzer> m_pFileAnalyzer;
    CWorkQueue m_addQueue;
};
