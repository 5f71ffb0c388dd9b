// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CancelFlag.h"
#include "base/SmartPtr.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "engine/envelope/PcmThumbnail.h"
#include "engine/print/Fingerprint.h"
#include "platform/AudioStream.h"
#include "song/AnalysisProblem.h"
#include "song/BeatTimes.h"
#include "song/Harmony.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

class IProfileObserver;

/// How a song is to be profiled. Nothing is taken over; every pointer may be null.
struct CProfileOptions {
    CCancelFlag const* m_pCancel = nullptr;  // when it gets set, the run ends soon
    CProfiler::Sink m_progress = {};         // percents, on the calling thread; none: they are lost
    IProfileObserver* m_pObserver = nullptr; // hears what the stages hand on
    bool m_bKeepEnvelopes = false;           // 2 floats for each 256 samples
    bool m_bReadAhead = false;               // decode on a thread of its own, for a core to spare
    bool m_bHearBeats = false;               // beats and downbeats in seconds, and their source
    bool m_bHarmony = false;                 // the key of chords and melody as well
};

/// True when each of `songs` songs that are heard at once can have a core more, to be decoded on.
bool HasCoresToReadAhead(std::size_t songs);

/// Everything that one hearing of a song brings.
struct CSongProfile {
    CSongProfile();

    [[nodiscard]] bool IsHeard() const { return m_outcome.m_problem == EAnalysisProblem::None; }

    CAnalysisOutcome m_outcome;
    bool m_bCancelled = false; // the rest is void then
    CProfileResults m_results; // defaults, but for bit rate and key, of a song that can't be heard
    CSmartPtr<CFingerprint> m_pPrint;
    CSmartPtr<CFingerprint> m_pLargePrint;
    std::vector<int> m_vPercents;      // as they came
    float m_fHeardBpm = 0.0f;          // before the rule for short clips; 0 for none
    bool m_bByLength = false;          // by that rule the tempo is another one
    CPfPcmThumbnail m_energy;          // spectral energy; empty unless it was asked for
    CPfPcmThumbnail m_bass;            // peaks of the signal below 120 Hz; likewise
    CBeatTimes m_beats;                // none unless they were asked for
    CBeatSource m_beatSource;          // what they were found from; likewise
    std::optional<CHarmony> m_harmony; // empty unless it was asked for
};

/// A song on its way into the engine.
struct CSongAudio {
    CAudioStream m_stream; // open, unless the outcome says why not
    CAnalysisOutcome m_outcome;
};

/// Opens the file at `path`, which is bytes, and counts its samples. `cancel` may be null; the song
/// keeps it.
CSongAudio LoadSong(std::string const& path, CCancelFlag const* cancel);

/// Decodes a loaded song into the engine, which hears it while it comes: neither holds it as a
/// whole. A song that could not be loaded goes through it as one without samples. A damaged one may
/// turn out to be of another length than it seemed; it is then heard again, percents and observer
/// included, and the first time is void.
CSongProfile ProfileAudio(CSongAudio song, CProfileOptions const& options);

/// Runs the engine over at most 2^31 - 1 samples in [-1, 1] at 44100 Hz, which stay the caller's.
CSongProfile ProfileSamples(std::span<float const> samples, CProfileOptions const& options);

/// Both in one: the whole road of one song, from its file to its profile, on the calling thread.
/// Posts no notification. The same file gives the same profile, bit for bit.
/// Thread: any; several may run at once.
CSongProfile ProfileSong(std::string const& path, CProfileOptions const& options);
