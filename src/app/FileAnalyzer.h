// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "song/SongFacts.h"
#include "song/SongProfile.h"
#include "song/TempoCandidates.h"

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

class CBPMFile;
class CString;
class MacThread;

/// Analyses one file per call of `Analyze` on a worker of its own: decodes it, profiles it and
/// posts what came out to the process's notification centre, from the worker:
/// `kFileProgressNotification` while it runs, `kFileCompleteNotification` once with the tempo as
/// text ("%3.2f", "0.00" when there is none), and `kAnalysisCompleteNotification` at the end of
/// every run, also of one without a file.
///
/// The next call may come from within a handler of the last notification, hence from the worker
/// that is about to end: every worker first waits for those before it, so that no two run at once
/// and no more than two thread objects exist.
///
/// Thread: every operation is safe from any thread. `Wait` and the destructor not on a worker.
class CFileAnalyzer {
public:
    CFileAnalyzer();
    CFileAnalyzer(CFileAnalyzer const&) = delete;
    CFileAnalyzer& operator=(CFileAnalyzer const&) = delete;

    /// Starts no further run, cancels the one in hand and waits for it.
    virtual ~CFileAnalyzer();

    /// Whether the runs that are started from now on decode on a thread of their own, beside the
    /// one that profiles; unless set, they do when there is a core to spare.
    void SetReadAhead(bool isOn) { m_bReadAhead = isOn; }

    /// Starts the analysis of `file`, which stays the caller's and may be null, and returns.
    /// Returns: false when no worker could be started; nothing is posted then.
    bool Analyze(CBPMFile* file);

    /// Makes the run in hand end early. It posts its notifications all the same; what they carry
    /// is void when `WasCancelled` says so.
    void Cancel();

    /// Waits until no run is in hand, whatever the handlers may still start meanwhile.
    void Wait();

    /// True when the last file's run was cancelled, in time or not.
    [[nodiscard]] bool WasCancelled() const;

    /// What came of the last file. A tempo of 0 says by itself that no beat was found.
    [[nodiscard]] CAnalysisOutcome GetOutcome() const;

    /// Has the readings of the tempo found too, or no longer, from the next run on. That keeps two
    /// floats for each 256 samples of the song.
    void WantCandidates(bool isWanted = true) { m_bCandidates = isWanted; }

    /// The readings of the last file's tempo; none unless they were wanted.
    [[nodiscard]] CTempoCandidates GetCandidates() const;

    /// Has all else found too, from the next run on; `withEnvelopes`: 2 bytes for each 256 samples
    /// are kept. Candidates must be wanted as well.
    void WantFacts(bool withEnvelopes) {
        m_bFacts = true;
        m_bEnvelopes = withEnvelopes;
    }

    /// What was found in the last file; nothing unless it was wanted, and of one that wasn't heard.
    [[nodiscard]] std::optional<CSongFacts> GetFacts() const;

    /// True when the last file's tempo follows from the length of a clip under 30 s.
    [[nodiscard]] bool IsByLength() const;

    /// Has the key of chords and melody found too, from the next run on.
    void WantHarmony() { m_bHarmony = true; }

    /// That key of the last file; nothing unless it was wanted.
    [[nodiscard]] std::optional<CHarmony> GetHarmony() const;

    /// The last file's key as tags have it, "Am"; empty when none was found.
    [[nodiscard]] std::string GetKey() const;

    /// What the worker does, in this order: the current file, if there is one, is decoded and
    /// processed; then the end is posted. `Analyze` is the way to have it done.
    void AnalyzeFile();

    /// Opens `file` and counts its samples, of which there are none when that fails.
    void loadAudioWithFilename(CBPMFile const* file);

    /// Decodes and profiles the samples at hand, posts the tempo with `file`, and closes the file.
    void ProcessFile(CBPMFile* file);

private:
    static std::uint32_t AnalyzeFile(void* param);
    void HearFile(CBPMFile* file);
    void Tell(CBPMFile* file, float bpm);
    void WaitForOlderThreads();
    void Await(std::shared_ptr<MacThread> const& oldest);
    std::shared_ptr<CCancelFlag const> CancelOfRun() const;

    mutable std::mutex m_lock; // Guards everything but the audio, which is the worker's.
    CBPMFile* m_pFile = nullptr;
    std::shared_ptr<CCancelFlag> m_pCancel;
    CAnalysisOutcome m_outcome;
    CTempoCandidates m_candidates;
    std::optional<CSongFacts> m_facts;
    std::optional<CHarmony> m_harmony;
    bool m_bByLength = false;
    std::string m_sKey;
    bool m_bClosing = false;
    std::atomic<bool> m_bReadAhead = HasCoresToReadAhead(1);
    std::deque<std::shared_ptr<MacThread>> m_vThreads; // Oldest first.

    std::shared_ptr<CCancelFlag const> m_pAudioCancel; // the audio's
    CSongAudio m_audio;
    std::atomic<bool> m_bCandidates = false;
    std::atomic<bool> m_bFacts = false;
    std::atomic<bool> m_bEnvelopes = false;
    std::atomic<bool> m_bHarmony = false;
    bool m_bTold = false; // The file's end was posted; the worker's, as the audio.
};

/// True when there is a folder at `path`.
bool IsDirectory(CString const& path);
