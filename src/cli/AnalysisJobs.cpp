// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps of the loop: begin files while a slot is free; wait until one is finished or a request
// to stop comes; collect what is finished; hand on the rows whose turn it is.

#include "cli/AnalysisJobs.h"

#include "IDTag/ID3Reader.h"
#include "app/BPMFile.h"
#include "app/FileAnalyzer.h"
#include "app/RowTags.h"
#include "base/FileUtil.h"
#include "cli/Interrupt.h"
#include "cli/Progress.h"
#include "cli/WriteReason.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <string>

namespace {

constexpr std::chrono::milliseconds kLongestWait(50); // Fixed: until a request to stop is seen.
constexpr char kTempoFrameId[] = "TBPM";              // Standard: ID3v2.3.0, section 4.2.1.

/// The number that `text` begins with, blanks before it left out; 0 when there is none.
template <typename Number>
Number ParseNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    Number value = 0;
    (void)std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// Fills the row's texts from the file's tag. Returns: false when the tag must not be touched.
bool ReadTexts(CBPMFile& file, std::string const& name, CReportRow& row) {
    bool const isTagOpen = ReadRowTags(file);
    CString fileName;
    CFileUtil::ExtractFileName(file.GetPath(), fileName);
    // Standard input lies in a file of another name.
    bool const isItsName = name == kStandardInputName && file.GetTitle() == fileName;
    row.m_sTitle = isItsName ? name : file.GetTitle().ToUtf8();
    row.m_sArtist = file.GetArtist().ToUtf8();
    return isTagOpen;
}

/// Stores a tempo in the file's tag as the window does, but never one of 0.
/// Returns: why that can't be done, for a person; empty when it is done or there is no need.
std::string StoreTempo(CBPMFile const& file, bool isTagOpen, std::string const& tempo) {
    if (!(ParseNumber<double>(tempo) > 0.0)) {
        return {};
    }
    EWriteProblem problem = EWriteProblem::UnknownFrameId;
    if (isTagOpen) {
        CID3Reader::SetTagString(file.GetPath(), kTempoFrameId, CString(tempo.c_str()), &problem);
    }
    return problem == EWriteProblem::OtherExtension ? std::string() : WriteReason(problem);
}

} // namespace

/// One file at a time under way.
struct CAnalysisJobs::CSlot {
    CFileAnalyzer m_analyzer;
    std::unique_ptr<CBPMFile> m_pFile; // null while the slot is free
    std::size_t m_nIndex = 0;
    CReportRow m_row;
    int m_nPercent = 0;
    bool m_bTagOpen = true; // the tag may be written
    bool m_bFinished = false;
    bool m_bDone = false; // finished with a tempo or an error, not cancelled
};

CAnalysisJobs::CAnalysisJobs(std::vector<CInputFile> const& files, CAnalysisOptions const& options,
                             CProgress& progress)
    : m_vFiles(files), m_options(options), m_progress(progress), m_vRows(files.size()) {
    for (std::size_t i = 0; i < std::min(options.m_nJobs, files.size()); ++i) {
        m_vSlots.push_back(std::make_unique<CSlot>());
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

std::size_t CAnalysisJobs::Run(RowSink const& sink) {
    while (m_nNext < m_vFiles.size() || !IsIdle()) {
        StartNext();
        HandOn(sink, false);
        if (m_bStopping && IsIdle()) {
            break;
        }
        WaitForNews();
        CollectFinished();
    }
    HandOn(sink, true);
    return m_nDone;
}

bool CAnalysisJobs::IsIdle() const {
    return std::ranges::all_of(m_vSlots, [](auto const& slot) { return slot->m_pFile == nullptr; });
}

void CAnalysisJobs::StartNext() {
    for (auto const& slot : m_vSlots) {
        while (slot->m_pFile == nullptr && m_nNext < m_vFiles.size() && !m_bStopping &&
               !CInterrupt::IsSet()) {
            Begin(*slot, m_nNext++);
        }
    }
}

/// Begins the file at `index`. The slot stays free when the file is done without an analysis.
void CAnalysisJobs::Begin(CSlot& slot, std::size_t index) {
    CInputFile const& input = m_vFiles[index];
    slot.m_nIndex = index;
    slot.m_row = {};
    slot.m_row.m_sPath = input.m_sName;
    slot.m_row.m_sTitle = input.m_sName;
    slot.m_row.m_sError = input.m_sError;
    if (!input.m_sError.empty()) {
        TakeRow(slot);
        return;
    }
    auto file = std::make_unique<CBPMFile>(input.m_sPath);
    slot.m_bTagOpen = ReadTexts(*file, input.m_sName, slot.m_row);
    if (!slot.m_bTagOpen) {
        slot.m_row.m_sNote = "its ID3v2.2 tag holds an unknown kind of frame and isn't read";
    }
    if (file->IsDone() && !m_options.m_bForce) {
        slot.m_row.m_dTempo = LeadingNumber(file->GetTempo());
        slot.m_row.m_source = ETempoSource::Tag;
        TakeRow(slot);
        return;
    }
    StartAnalysis(slot, std::move(file));
}

void CAnalysisJobs::StartAnalysis(CSlot& slot, std::unique_ptr<CBPMFile> file) {
    {
        std::scoped_lock const guard(m_lock);
        slot.m_nPercent = 0;
        slot.m_bFinished = false;
        slot.m_bDone = false;
        slot.m_pFile = std::move(file);
    }
    if (!slot.m_analyzer.Analyze(slot.m_pFile.get())) {
        slot.m_row.m_sError = "no thread can be had for its analysis";
        TakeRow(slot);
    }
}

/// Keeps the slot's row, which is done, and frees the slot.
void CAnalysisJobs::TakeRow(CSlot& slot) {
    m_vRows[slot.m_nIndex] = std::move(slot.m_row);
    ++m_nDone;
    Free(slot);
}

void CAnalysisJobs::Free(CSlot& slot) {
    std::scoped_lock const guard(m_lock);
    slot.m_bFinished = false;
    slot.m_pFile.reset();
}

void CAnalysisJobs::WaitForNews() {
    auto const hasNews = [this] {
        return std::ranges::any_of(m_vSlots, [](auto const& slot) { return slot->m_bFinished; });
    };
    if (!IsIdle()) {
        std::unique_lock guard(m_lock);
        m_changed.wait_for(guard, kLongestWait, hasNews);
    }
    if (CInterrupt::IsSet()) {
        Stop();
    }
    ShowProgress();
}

void CAnalysisJobs::Stop() {
    m_bStopping = true;
    for (auto const& slot : m_vSlots) {
        if (slot->m_pFile != nullptr) {
            slot->m_analyzer.Cancel();
        }
    }
}

void CAnalysisJobs::CollectFinished() {
    for (auto const& slot : m_vSlots) {
        bool isFinished = false;
        bool isDone = false;
        {
            std::scoped_lock const guard(m_lock);
            isFinished = slot->m_bFinished;
            isDone = slot->m_bDone;
        }
        if (!isFinished) {
            continue;
        }
        slot->m_analyzer.Wait();
        if (isDone) {
            TakeRow(*slot);
        } else {
            Free(*slot);
        }
    }
}

/// Hands on every row whose turn it is; `skipsGaps`: also those behind a file that isn't done.
void CAnalysisJobs::HandOn(RowSink const& sink, bool skipsGaps) {
    for (; m_nHandedOn < m_vRows.size(); ++m_nHandedOn) {
        std::optional<CReportRow>& row = m_vRows[m_nHandedOn];
        if (!row && !skipsGaps) {
            return;
        }
        if (row && !sink(*row)) {
            m_nHandedOn = m_vRows.size();
            Stop();
            return;
        }
        row.reset();
    }
}

void CAnalysisJobs::ShowProgress() {
    int percents = 0;
    std::string_view name;
    {
        std::scoped_lock const guard(m_lock);
        for (auto const& slot : m_vSlots) {
            if (slot->m_pFile != nullptr) {
                percents += slot->m_nPercent;
                name = name.empty() ? slot->m_row.m_sTitle : name;
            }
        }
    }
    double const whole = 100.0 * static_cast<double>(m_nDone) + percents;
    m_progress.Show(m_nDone, m_vFiles.size(),
                    static_cast<int>(whole / static_cast<double>(m_vFiles.size())), name);
}

/// The slot whose file the notification speaks of; null when it is none of these. Call it with the
/// lock held.
CAnalysisJobs::CSlot* CAnalysisJobs::SlotOf(CUserInfo const* info) {
    void const* const file = UserInfoPointer(info, kUserDataKey);
    for (auto const& slot : m_vSlots) {
        if (file != nullptr && slot->m_pFile.get() == file) {
            return slot.get();
        }
    }
    return nullptr;
}

void CAnalysisJobs::OnProgress(CUserInfo const* info) {
    std::scoped_lock const guard(m_lock);
    if (CSlot* const slot = SlotOf(info); slot != nullptr) {
        slot->m_nPercent = ParseNumber<int>(UserInfoText(info, kPercentKey));
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
    // Until it is finished, the slot's row and file are this worker's alone.
    bool const isDone = !slot->m_analyzer.WasCancelled();
    std::string const failure = slot->m_analyzer.GetFailure();
    std::string const tempo = UserInfoText(info, kBpmKey);
    CReportRow& row = slot->m_row;
    row.m_sError = failure.empty() ? slot->m_analyzer.GetDamage() : failure;
    if (isDone && failure.empty()) {
        row.m_dTempo = ParseNumber<double>(tempo);
        row.m_source = ETempoSource::Analysis;
        std::string const problem =
            m_options.m_bWrite ? StoreTempo(*slot->m_pFile, slot->m_bTagOpen, tempo) : "";
        row.m_sError += row.m_sError.empty() || problem.empty() ? problem : "; " + problem;
    }
    std::scoped_lock const guard(m_lock);
    slot->m_bDone = isDone;
    slot->m_bFinished = true;
    m_changed.notify_one();
}
