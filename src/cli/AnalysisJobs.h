// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/NotificationCenter.h"
#include "cli/InputList.h"
#include "cli/Report.h"

#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

class CBPMFile;
class CProgress;

struct CAnalysisOptions {
    bool m_bForce = false;   // analyse files too whose tag has a tempo
    bool m_bWrite = false;   // store what an analysis finds in the tags of mp3 files
    std::size_t m_nJobs = 1; // files at once
};

/// Analyses files, several at once, and hands their rows on in the files' order. A request to stop
/// ends it: no file is begun any more, those at hand are cancelled, and what is done is handed on.
/// Thread: main; the analyses run on workers of their own.
class CAnalysisJobs {
public:
    /// Takes the next row. Returns: false when there is no use for more.
    using RowSink = std::function<bool(CReportRow const& row)>;

    /// Everything passed must outlive this object.
    CAnalysisJobs(std::vector<CInputFile> const& files, CAnalysisOptions const& options,
                  CProgress& progress);
    ~CAnalysisJobs();
    CAnalysisJobs(CAnalysisJobs const&) = delete;
    CAnalysisJobs& operator=(CAnalysisJobs const&) = delete;

    /// Returns: the number of files done.
    std::size_t Run(RowSink const& sink);

private:
    struct CSlot;

    void Begin(CSlot& slot, std::size_t index);
    void StartAnalysis(CSlot& slot, std::unique_ptr<CBPMFile> file);
    void TakeRow(CSlot& slot);
    void Free(CSlot& slot);
    void Stop();
    void StartNext();
    void WaitForNews();
    void CollectFinished();
    void HandOn(RowSink const& sink, bool skipsGaps);
    void ShowProgress();
    void OnProgress(CUserInfo const* info);
    void OnComplete(CUserInfo const* info);
    CSlot* SlotOf(CUserInfo const* info);
    [[nodiscard]] bool IsIdle() const;

    std::vector<CInputFile> const& m_vFiles;
    CAnalysisOptions m_options;
    CProgress& m_progress;

    std::vector<std::optional<CReportRow>> m_vRows; // by file; those done and not handed on yet
    std::size_t m_nNext = 0;                        // the first file that has not been begun
    std::size_t m_nHandedOn = 0;                    // the first file whose row is still to come
    std::size_t m_nDone = 0;
    bool m_bStopping = false;

    std::mutex m_lock; // guards what workers write into the slots
    std::condition_variable m_changed;
    std::vector<std::unique_ptr<CSlot>> m_vSlots;
};
