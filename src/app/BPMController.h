// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Adder.h"
#include "app/Batch.h"
#include "app/BpmView.h"
#include "app/FileList.h"
#include "base/CString.h"
#include "base/NotificationCenter.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

enum class EDropOperation { None, Copy };

/// Where a drop would go: in front of `m_nRow`, as a copy, or nowhere.
struct CDropAnswer {
    EDropOperation m_operation = EDropOperation::None;
    std::int64_t m_nRow = 0;
};

/// The operations that the window calls: a thin face over the list, the batch that works through
/// it and the adder that fills it, without any toolkit. Files and folders come in on a worker of
/// the adder's; each file is analysed on the analyser's worker, whose notifications are handled
/// there.
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

    /// May this entry be chosen in the open panel? Folders always; files of three types, or of any
    /// when all are wished for.
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

    /// How many tempos would be lost by `reScan` that this system didn't find: by its journal, and
    /// where that knows nothing, all that came with the files.
    [[nodiscard]] std::size_t countForeignTempos();

    /// What is to be otherwise than the list has it by itself; counts from now on.
    void setWishes(CWishes const& wishes);

    /// Files of other kinds that were left out of folders, in the order found, handed over.
    [[nodiscard]] std::vector<CString> takeLeftOut();

    /// Folders that could not be read so far, in the order met.
    [[nodiscard]] std::vector<CString> unreadFolders() const;

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
    [[nodiscard]] std::vector<CTempoCandidate> rowCandidates(std::size_t row) const override;
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

    // For what works beside it on the same rows.

    [[nodiscard]] IBpmView& view() { return m_view; }
    [[nodiscard]] CFileList& list() { return m_list; }
    [[nodiscard]] CBatch& batch() { return m_batch; }

private:
    IBpmView& m_view;
    CFileList m_list;
    CBatch m_batch;
    CAdder m_adder;
};
