// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps of the loop: begin files while a slot is free; hand on the rows whose turn it is;
// search on for files, or wait until one is finished or a request to stop comes; collect what is
// finished.

#include "cli/AnalysisJobs.h"

#include "app/FileAnalyzer.h"
#include "cli/Interrupt.h"
#include "cli/Progress.h"
#include "song/SongProfile.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <new>

namespace {

constexpr std::chrono::milliseconds kLongestWait(50); // Fixed: until a request to stop is seen.
constexpr double kWholePercent = 100.0;
constexpr int kFilesARound = 64; // Fixed: found before the workers are looked after again.

} // namespace

/// One file at a time under way.
struct CAnalysisJobs::CSlot {
    CFileAnalyzer m_analyzer;
    std::unique_ptr<CSongWork> m_pWork; // null while the slot is free
    CBPMFile const* m_pHeard = nullptr; // what the analyzer is at
    std::size_t m_nIndex = 0;
    std::shared_ptr<CSong> m_pSong; // the file among its names
    int m_nPercent = 0;
    bool m_bFinished = false;
    bool m_bCancelled = false; // finished without a result
    bool m_bAgain = false;     // finished, but the file changed meanwhile
    bool m_bHadMemory = true;  // to conclude its work
};

CAnalysisJobs::CAnalysisJobs(CInputWalk& walk, CAnalysisOptions const& options, CProgress& progress)
    : m_walk(walk), m_options(options), m_progress(progress), m_names(options.m_song.m_bWrite) {
    for (std::size_t i = 0; i < options.m_nJobs; ++i) {
        m_vSlots.push_back(std::make_unique<CSlot>());
        if (options.m_song.m_bCandidates) {
            m_vSlots.back()->m_analyzer.WantCandidates();
        }
        if (options.m_song.m_bFacts) {
            m_vSlots.back()->m_analyzer.WantFacts(options.m_song.m_bEnvelopes);
        }
        if (options.m_song.m_bHarmony) {
            m_vSlots.back()->m_analyzer.WantHarmony();
        }
    }
    CNotificationCenter& centre = CNotificationCenter::Default();
    centre.AddObserver(this, kFileProgressNotification,
                       [this](CUserInfo const* info) { OnProgress(info); });
    centre.AddObserver(this, kFileCompleteNotification,
                       [this](CUserInfo const* info) { OnComplete(info); });
}

CAnalysisJobs::~CAnalysisJobs() {
    m_vSlots.clear(); // waits for the workers, whose notifications still come here
    CNotificationCenter& centre = CNotificationCenter::Default();
    centre.RemoveObserver(this, kFileProgressNotification);
    centre.RemoveObserver(this, kFileCompleteNotification);
}

void CAnalysisJobs::Run(RowSink const& sink) {
    ShowProgress();
    while (!IsOver()) {
        StartNext();
        if (!m_rows.HandOn(sink, false)) {
            Stop();
        }
        LookAround();
        CollectFinished();
    }
    (void)m_rows.HandOn(sink, true);
}

bool CAnalysisJobs::IsOver() const {
    bool const isNothingLeft = m_vPending.empty() && m_walk.IsAtEnd();
    return IsIdle() && (m_bStopping || isNothingLeft);
}

bool CAnalysisJobs::IsIdle() const {
    return std::ranges::all_of(m_vSlots, [](auto const& slot) { return slot->m_pWork == nullptr; });
}

/// Begins one file on each free slot, so that rows are handed on soon.
void CAnalysisJobs::StartNext() {
    for (auto const& slot : m_vSlots) {
        bool const isWanted = !m_vPending.empty() && !m_bStopping && !CInterrupt::IsSet();
        if (isWanted && slot->m_pWork == nullptr) {
            CPlacedFile file = std::move(m_vPending.front());
            m_vPending.pop_front();
            Begin(*slot, std::move(file));
        }
    }
}

/// Begins a file. The slot stays free when it is done without an analysis, or by another name.
void CAnalysisJobs::Begin(CSlot& slot, CPlacedFile file) {
    std::optional<CPlacedRow> answered;
    slot.m_pSong = m_names.Enter(file, answered);
    if (answered) {
        PutRow(answered->first, std::move(answered->second));
    }
    if (slot.m_pSong == nullptr) {
        return;
    }
    slot.m_pWork = std::make_unique<CSongWork>(std::move(file.m_input), m_options.m_song);
    slot.m_nIndex = file.m_nIndex;
    BeginWork(slot);
}

/// How many songs are heard at once from now on, as far as that is known.
std::size_t CAnalysisJobs::SongsAtOnce() const {
    auto const busy = static_cast<std::size_t>(
        std::ranges::count_if(m_vSlots, [](auto const& slot) { return slot->m_pWork != nullptr; }));
    return m_walk.IsAtEnd() ? std::min(busy + m_vPending.size(), m_vSlots.size()) : m_vSlots.size();
}

void CAnalysisJobs::BeginWork(CSlot& slot) {
    bool const isDone = slot.m_pWork->Begin();
    {
        std::scoped_lock const guard(m_lock);
        slot.m_bHadMemory = true;
        slot.m_pHeard = slot.m_pWork->File();
        slot.m_nPercent = 0;
        slot.m_bFinished = false;
    }
    slot.m_analyzer.SetReadAhead(HasCoresToReadAhead(SongsAtOnce()));
    if (isDone) {
        TakeRow(slot);
        return;
    }
    m_firstHeard = m_firstHeard.value_or(std::chrono::steady_clock::now());
    if (!slot.m_analyzer.Analyze(slot.m_pWork->File())) {
        slot.m_pWork->Fail(EAnalysisProblem::NoThread);
        TakeRow(slot);
    }
}

/// Keeps the slot's row, which is done, and frees the slot.
void CAnalysisJobs::TakeRow(CSlot& slot) {
    CReportRow row = std::move(slot.m_pWork->Row());
    std::vector<CPlacedFile> released;
    for (CPlacedRow& other : CSongNames::Answer(*slot.m_pSong, row, released)) {
        PutRow(other.first, std::move(other.second));
    }
    m_vPending.insert(m_vPending.begin(), std::make_move_iterator(released.begin()),
                      std::make_move_iterator(released.end()));
    PutRow(slot.m_nIndex, std::move(row));
    Free(slot);
}

void CAnalysisJobs::PutRow(std::size_t index, CReportRow row) {
    m_rows.Put(index, std::move(row));
    ++m_nDone;
}

void CAnalysisJobs::Free(CSlot& slot) {
    std::scoped_lock const guard(m_lock);
    slot.m_bFinished = false;
    slot.m_pHeard = nullptr;
    slot.m_pWork.reset();
}

/// Searches on for files. When there are no more, waits for the workers.
void CAnalysisJobs::LookAround() {
    bool const isWalking = WalkOn();
    bool const isBusy =
        std::ranges::all_of(m_vSlots, [](auto const& slot) { return slot->m_pWork != nullptr; });
    bool const isWaiting = isBusy || (m_vPending.empty() && !IsIdle());
    if (!isWalking && (isWaiting || (m_bStopping && !IsIdle()))) {
        std::unique_lock guard(m_lock);
        m_changed.wait_for(guard, kLongestWait, [this] {
            return std::ranges::any_of(m_vSlots,
                                       [](auto const& slot) { return slot->m_bFinished; });
        });
    }
    if (CInterrupt::IsSet()) {
        Stop();
    }
    ShowProgress();
}

/// Returns: true when there may be more files to be found.
bool CAnalysisJobs::WalkOn() {
    for (int i = 0; i < kFilesARound && !m_bStopping; ++i) {
        std::optional<CInputFile> file = m_walk.Next();
        if (!file) {
            return false;
        }
        m_vPending.push_back({m_nFound++, std::move(*file)});
    }
    return !m_bStopping;
}

void CAnalysisJobs::Stop() {
    m_bStopping = true;
    for (auto const& slot : m_vSlots) {
        if (slot->m_pWork != nullptr) {
            slot->m_analyzer.Cancel();
        }
    }
}

void CAnalysisJobs::CollectFinished() {
    for (auto const& slot : m_vSlots) {
        {
            std::scoped_lock const guard(m_lock);
            if (!slot->m_bFinished) {
                continue;
            }
        }
        slot->m_analyzer.Wait();
        if (slot->m_bCancelled || (slot->m_bAgain && m_bStopping)) {
            Free(*slot);
        } else if (!slot->m_bHadMemory) {
            slot->m_pWork->Fail(EAnalysisProblem::NoMemory);
            TakeRow(*slot);
        } else if (slot->m_bAgain) {
            BeginWork(*slot);
        } else {
            TakeRow(*slot);
        }
    }
}

void CAnalysisJobs::ShowProgress() {
    if (!m_progress.IsDue()) {
        return;
    }
    int percents = 0;
    double heard = 0.0;
    std::string_view name;
    {
        std::scoped_lock const guard(m_lock);
        heard = m_dHeardSeconds;
        for (auto const& slot : m_vSlots) {
            if (slot->m_pWork != nullptr) {
                percents += slot->m_nPercent;
                name = name.empty() ? slot->m_pWork->Row().m_sTitle : name;
            }
        }
    }
    double const whole = kWholePercent * static_cast<double>(m_nDone) + percents;
    auto const found = static_cast<double>(m_nFound);
    auto const now = std::chrono::steady_clock::now();
    std::chrono::duration<double> const sinceEver = now.time_since_epoch();
    std::chrono::duration<double> const listening = now - m_firstHeard.value_or(now);
    m_pace.Note(sinceEver.count(), whole);
    m_progress.Show({.m_nDone = m_nDone,
                     .m_nTotal = m_nFound,
                     .m_bTotalKnown = m_walk.IsAtEnd(),
                     .m_nPercent = m_nFound == 0 ? 0 : static_cast<int>(whole / found),
                     .m_dRate = listening.count() > 0.0 ? heard / listening.count() : 0.0,
                     .m_left = m_walk.IsAtEnd() ? m_pace.Left(kWholePercent * found) : std::nullopt,
                     .m_sName = name});
}

/// The slot whose file the notification speaks of; null when it is none of these. Call it with the
/// lock held.
CAnalysisJobs::CSlot* CAnalysisJobs::SlotOf(CUserInfo const* info) {
    void const* const file = UserInfoPointer(info, kUserDataKey);
    for (auto const& slot : m_vSlots) {
        if (file != nullptr && slot->m_pHeard == file) {
            return slot.get();
        }
    }
    return nullptr;
}

void CAnalysisJobs::OnProgress(CUserInfo const* info) {
    std::scoped_lock const guard(m_lock);
    if (CSlot* const slot = SlotOf(info); slot != nullptr) {
        slot->m_nPercent = std::atoi(UserInfoText(info, kPercentKey).c_str());
    }
}

void CAnalysisJobs::OnComplete(CUserInfo const* info) {
    CSlot* slot = nullptr;
    {
        std::scoped_lock const guard(m_lock);
        slot = SlotOf(info);
    }
    if (slot == nullptr) {
        return;
    }
    // Until it is finished, the slot's work is this worker's alone.
    bool const isCancelled = slot->m_analyzer.WasCancelled();
    bool isDone = !isCancelled;
    bool hasMemory = true;
    double seconds = 0.0;
    try {
        CHeardSong heard = {.m_outcome = slot->m_analyzer.GetOutcome(),
                            .m_sTempo = UserInfoText(info, kBpmKey),
                            .m_bByLength = slot->m_analyzer.IsByLength(),
                            .m_candidates = std::nullopt,
                            .m_harmony = slot->m_analyzer.GetHarmony()};
        if (m_options.m_song.m_bCandidates) {
            heard.m_candidates = slot->m_analyzer.GetCandidates();
        }
        heard.m_facts = slot->m_analyzer.GetFacts();
        isDone = isDone && slot->m_pWork->Conclude(heard, slot->m_analyzer.GetKey());
        seconds = heard.m_outcome.m_report.m_dHeardSeconds;
        slot->m_pWork->Row().m_dHeardSeconds = seconds;
    } catch (std::bad_alloc const&) {
        hasMemory = false; // the main thread tells
    }
    std::scoped_lock const guard(m_lock);
    m_dHeardSeconds += isCancelled ? 0.0 : seconds;
    slot->m_bHadMemory = hasMemory;
    slot->m_bCancelled = isCancelled;
    slot->m_bAgain = !isCancelled && !isDone;
    slot->m_bFinished = true;
    m_changed.notify_one();
}
