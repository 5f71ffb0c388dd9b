// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps of a run, on its worker: wait for the workers before it; decode the file; profile the
// samples and post the tempo; post the end.

#include "app/FileAnalyzer.h"

#include "app/BPMFile.h"
#include "app/MacThread.h"
#include "base/FileManager.h"
#include "base/NotificationCenter.h"
#include "base/SmartPtr.h"
#include "engine/ProfileBuilder.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/print/Fingerprint.h"
#include "platform/AudioDecoder.h"
#include "song/SamplePass.h"

#include <array>
#include <charconv>

namespace {

constexpr double kWorkerPriority = 0.5; // Fixed: as the rest of the process.

/// "%3.2f", with a point whatever the locale: the text goes into tags, which other programs read.
std::string TempoText(float bpm) {
    constexpr int kDecimals = 2;
    std::array<char, 64> text{}; // Derived: the largest float has 39 digits before the point.
    char* const end = std::to_chars(text.data(), text.data() + text.size(),
                                    static_cast<double>(bpm), std::chars_format::fixed, kDecimals)
                          .ptr;
    return {text.data(), end};
}

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
    std::shared_ptr<MacThread> thread = MacBeginThread(AnalyzeFile, this, kWorkerPriority);
    if (thread == nullptr) {
        return false;
    }
    m_pFile = file;
    m_pCancel = std::make_shared<CCancelFlag>();
    m_vThreads.push_back(std::move(thread));
    return true;
}

std::uint32_t CFileAnalyzer::AnalyzeFile(void* param) {
    auto* const analyzer = static_cast<CFileAnalyzer*>(param);
    analyzer->WaitForOlderThreads();
    analyzer->AnalyzeFile();
    return 0;
}

void CFileAnalyzer::AnalyzeFile() {
    CBPMFile* file = nullptr;
    {
        std::scoped_lock const guard(m_lock);
        file = m_pFile;
    }
    if (file != nullptr) {
        loadAudioWithFilename(file);
        ProcessFile(file);
    }
    CNotificationCenter::Default().Post(kAnalysisCompleteNotification, nullptr);
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
    std::shared_ptr<CCancelFlag const> cancel;
    {
        std::scoped_lock const guard(m_lock);
        cancel = m_pCancel;
    }
    CAudioDecoder decoder(cancel.get());
    CStatus const status = decoder.Decode(file->GetPath().ToPath(), m_audio);
    std::scoped_lock const guard(m_lock);
    m_outcome = {.m_problem =
                     status == kStatusOk ? EAnalysisProblem::None : EAnalysisProblem::NotDecoded,
                 .m_report = decoder.GetReport()};
}

void CFileAnalyzer::ProcessFile(CBPMFile* file) {
    CSmartPtr<CFingerprint> print;
    CSmartPtr<CFingerprint> largePrint;
    print.Create();
    largePrint.Create();
    auto results = std::make_unique<CProfileResults>();
    auto profiler = std::make_unique<CProfiler>(file);
    auto reader = std::make_unique<CSamplePass>(m_audio);
    auto builder = std::make_unique<CProfileBuilder>();

    SetBuilder(builder.get());
    builder->BuildProfile(profiler.get(), reader.get(), results.get(), print.Get(),
                          largePrint.Get());
    SetBuilder(nullptr);
    NoteEnd(*builder);

    CUserInfo const info = {{kUserDataKey, static_cast<void*>(file)},
                            {kBpmKey, TempoText(results->GetBpm())}};
    CNotificationCenter::Default().Post(kFileCompleteNotification, &info);

    builder.reset();
    reader.reset();
    profiler.reset();
    results.reset();
    m_audio = {};
    largePrint.Clear();
    print.Clear();
}

/// Makes the builder known to `Cancel`, or unknown again. A cancel that came before counts.
void CFileAnalyzer::SetBuilder(CProfileBuilder* builder) {
    std::scoped_lock const guard(m_lock);
    m_pBuilder = builder;
    if (builder != nullptr && m_pCancel->IsSet()) {
        builder->CancelProfiling();
    }
}

/// A run over a decoded file that neither came to its end nor was cancelled had no memory.
void CFileAnalyzer::NoteEnd(CProfileBuilder const& builder) {
    std::scoped_lock const guard(m_lock);
    if (!builder.IsComplete() && !m_pCancel->IsSet() &&
        m_outcome.m_problem == EAnalysisProblem::None) {
        m_outcome.m_problem = EAnalysisProblem::NoMemory;
    }
}

void CFileAnalyzer::Cancel() {
    std::scoped_lock const guard(m_lock);
    m_pCancel->Set();
    if (m_pBuilder != nullptr) {
        m_pBuilder->CancelProfiling();
    }
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

CAnalysisOutcome CFileAnalyzer::GetOutcome() const {
    std::scoped_lock const guard(m_lock);
    return m_outcome;
}

bool IsDirectory(CString const& path) {
    return CFileManager::IsDirectory(path);
}
