// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/NotificationCenter.h"
#include "cli/InputWalk.h"
#include "cli/Pace.h"
#include "cli/RowQueue.h"
#include "cli/SongNames.h"
#include "cli/SongWork.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

class CProgress;

struct CAnalysisOptions {
    CSongOptions m_song;
    std::size_t m_nJobs = 1; // files at once
};

/// Analyses files, several at once, while the search for them goes on, and hands their rows on in
/// the files' order. A request to stop ends it: no file is begun any more, those at hand are
/// cancelled, and what is done is handed on.
/// Thread: main; the analyses run on workers of their own.
class CAnalysisJobs {
public:
    /// Everything passed must outlive this object.
    CAnalysisJobs(CInputWalk& walk, CAnalysisOptions const& options, CProgress& progress);
    ~CAnalysisJobs();
    CAnalysisJobs(CAnalysisJobs const&) = delete;
    CAnalysisJobs& operator=(CAnalysisJobs const&) = delete;

    void Run(RowSink const& sink);

    /// Ends the run as a request to stop does; for the sink.
    void Stop();

    /// Files done, and files found so far.
    [[nodiscard]] std::size_t Done() const { return m_nDone; }
    [[nodiscard]] std::size_t Found() const { return m_nFound; }

private:
    struct CSlot;

    void StartNext();
    void Begin(CSlot& slot, CPlacedFile file);
    void BeginWork(CSlot& slot);
    void TakeRow(CSlot& slot);
    void PutRow(std::size_t index, CReportRow row);
    void Free(CSlot& slot);
    void LookAround();
    bool WalkOn();
    void CollectFinished();
    void ShowProgress();
    void OnProgress(CUserInfo const* info);
    void OnComplete(CUserInfo const* info);
    CSlot* SlotOf(CUserInfo const* info);
    [[nodiscard]] bool IsIdle() const;
    [[nodiscard]] std::size_t SongsAtOnce() const;
    [[nodiscard]] bool IsOver() const;

    CInputWalk& m_walk;
    CAnalysisOptions m_options;
    CProgress& m_progress;

    std::deque<CPlacedFile> m_vPending; // found and not begun
    std::size_t m_nFound = 0;
    std::size_t m_nDone = 0;
    CSongNames m_names;
    CRowQueue m_rows; // done and not handed on
    bool m_bStopping = false;
    CPace m_pace;
    std::optional<std::chrono::steady_clock::time_point> m_firstHeard; // when listening began

    double m_dHeardSeconds = 0.0; // of music; guarded by the lock
    std::mutex m_lock;            // guards what workers write into the slots
    std::condition_variable m_changed;
    std::vector<std::unique_ptr<CSlot>> m_vSlots;
};
