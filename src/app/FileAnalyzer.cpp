// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps of a run, on its worker: wait for the workers before it; open the file; profile the
// samples as they are decoded and post the tempo; post the end.

#include "app/FileAnalyzer.h"

#include "app/BPMFile.h"
#include "app/MacThread.h"
#include "base/FileManager.h"
#include "base/NotificationCenter.h"
#include "engine/Profiler.h"
#include "song/KeyText.h"
#include "song/SongCandidates.h"
#include "song/TempoText.h"

#include <new>
#include <utility>

namespace {

constexpr double kWorkerPriority = 0.5; // Fixed: as the rest of the process.

} // namespace

CFileAnalyzer::CFileAnalyzer() : m_pCancel(std::make_shared<CCancelFlag>()) {
}

CFileAnalyzer::~CFileAnalyzer() {
    {
        std::scoped_lock const guard(m_lock);
        m_bClosing = true;
    }
    Cancel();
    Wait();
}

bool CFileAnalyzer::Analyze(CBPMFile* file) {
    // The lock is held while the thread starts, so that it finds itself in the list.
    std::scoped_lock const guard(m_lock);
    if (m_bClosing) {
        return false;
    }
    try {
        auto cancel = std::make_shared<CCancelFlag>();
        m_vThreads.emplace_back(); // nothing may fail once the thread runs
        m_vThreads.back() = MacBeginThread(AnalyzeFile, this, kWorkerPriority);
        if (m_vThreads.back() == nullptr) {
            m_vThreads.pop_back();
            return false;
        }
        m_pFile = file;
        m_pCancel = std::move(cancel);
    } catch (std::bad_alloc const&) {
        return false;
    }
    return true;
}

std::uint32_t CFileAnalyzer::AnalyzeFile(void* param) {
    auto* const analyzer = static_cast<CFileAnalyzer*>(param);
    analyzer->WaitForOlderThreads();
    try {
        analyzer->AnalyzeFile();
    } catch (std::bad_alloc const&) {
        return 1; // not even the end could be posted
    }
    return 0;
}

void CFileAnalyzer::AnalyzeFile() {
    CBPMFile* file = nullptr;
    {
        std::scoped_lock const guard(m_lock);
        file = m_pFile;
    }
    if (file != nullptr) {
        HearFile(file);
    }
    CNotificationCenter::Default().Post(kAnalysisCompleteNotification, nullptr);
}

/// Decodes and processes the file. Without memory it has no tempo; that is posted, unless the
/// memory was missing to those who were told of it.
void CFileAnalyzer::HearFile(CBPMFile* file) {
    m_bTold = false;
    try {
        loadAudioWithFilename(file);
        ProcessFile(file);
    } catch (std::bad_alloc const&) {
        m_audio = {};
        {
            std::scoped_lock const guard(m_lock);
            m_outcome = {.m_problem = EAnalysisProblem::NoMemory};
        }
        if (!m_bTold) {
            Tell(file, 0.0f);
        }
    }
}

void CFileAnalyzer::Tell(CBPMFile* file, float bpm) {
    m_bTold = true;
    CUserInfo const info = {{kUserDataKey, static_cast<void*>(file)},
                            {kBpmKey, TempoText(static_cast<double>(bpm))}};
    CNotificationCenter::Default().Post(kFileCompleteNotification, &info);
}

/// Waits for the threads that were started before the calling one, and lets them go. They are at
/// their very end, and the caller holds no lock that they could want.
void CFileAnalyzer::WaitForOlderThreads() {
    for (;;) {
        std::shared_ptr<MacThread> oldest;
        {
            std::scoped_lock const guard(m_lock);
            oldest = m_vThreads.front();
        }
        if (oldest->isCurrentThread()) {
            return;
        }
        Await(oldest);
    }
}

void CFileAnalyzer::Await(std::shared_ptr<MacThread> const& oldest) {
    oldest->waitTillThreadEnds();
    std::scoped_lock const guard(m_lock);
    if (!m_vThreads.empty() && m_vThreads.front() == oldest) {
        m_vThreads.pop_front();
    }
}

void CFileAnalyzer::loadAudioWithFilename(CBPMFile const* file) {
    m_audio = {};
    m_pAudioCancel = CancelOfRun();
    m_audio = LoadSong(file->GetPath().ToPath(), m_pAudioCancel.get());
    std::scoped_lock const guard(m_lock);
    m_outcome = m_audio.m_outcome;
}

void CFileAnalyzer::ProcessFile(CBPMFile* file) {
    std::shared_ptr<CCancelFlag const> const cancel = CancelOfRun();
    CProfiler notifier(file);
    CSongProfile const profile = ProfileAudio(
        std::exchange(m_audio, {}),
        {.m_pCancel = cancel.get(),
         .m_progress = [&notifier](std::uint8_t percent) { notifier.SendProfileProgress(percent); },
         .m_bKeepEnvelopes = m_bCandidates,
         .m_bReadAhead = m_bReadAhead,
         .m_bHearBeats = m_bFacts,
         .m_bHarmony = m_bFacts || m_bHarmony});
    std::optional<CSongFacts> facts;
    if (m_bFacts && profile.IsHeard() && !profile.m_bCancelled) {
        facts = FactsOf(profile, m_bEnvelopes);
    }
    CTempoCandidates candidates = m_bCandidates ? CandidatesOf(profile) : CTempoCandidates();
    std::uint16_t tonic = 0;
    std::uint16_t mode = 0;
    profile.m_results.GetKey(&tonic, &mode);
    {
        std::scoped_lock const guard(m_lock);
        m_candidates = std::move(candidates);
        m_facts = std::move(facts);
        m_harmony = profile.m_harmony;
        m_bByLength = profile.m_bByLength;
        m_outcome = profile.m_outcome;
        m_sKey = profile.IsHeard() ? KeyText(tonic, mode) : std::string();
    }
    // What is there of a record that lacked memory isn't the song's.
    bool const isWhole = profile.m_outcome.m_problem != EAnalysisProblem::NoMemory;
    Tell(file, isWhole ? profile.m_results.GetBpm() : 0.0f);
}

std::string CFileAnalyzer::GetKey() const {
    std::scoped_lock const guard(m_lock);
    return m_sKey;
}

std::shared_ptr<CCancelFlag const> CFileAnalyzer::CancelOfRun() const {
    std::scoped_lock const guard(m_lock);
    return m_pCancel;
}

void CFileAnalyzer::Cancel() {
    std::scoped_lock const guard(m_lock);
    m_pCancel->Set();
}

void CFileAnalyzer::Wait() {
    for (;;) {
        std::shared_ptr<MacThread> oldest;
        {
            std::scoped_lock const guard(m_lock);
            if (m_vThreads.empty()) {
                return;
            }
            oldest = m_vThreads.front();
        }
        Await(oldest);
    }
}

bool CFileAnalyzer::WasCancelled() const {
    std::scoped_lock const guard(m_lock);
    return m_pCancel->IsSet();
}

CTempoCandidates CFileAnalyzer::GetCandidates() const {
    std::scoped_lock const guard(m_lock);
    return m_candidates;
}

std::optional<CSongFacts> CFileAnalyzer::GetFacts() const {
    std::scoped_lock const guard(m_lock);
    return m_facts;
}

std::optional<CHarmony> CFileAnalyzer::GetHarmony() const {
    std::scoped_lock const guard(m_lock);
    return m_harmony;
}

bool CFileAnalyzer::IsByLength() const {
    std::scoped_lock const guard(m_lock);
    return m_bByLength;
}

CAnalysisOutcome CFileAnalyzer::GetOutcome() const {
    std::scoped_lock const guard(m_lock);
    return m_outcome;
}

bool IsDirectory(CString const& path) {
    return CFileManager::IsDirectory(path);
}
