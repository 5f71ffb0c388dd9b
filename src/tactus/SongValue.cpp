// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "tactus/SongValue.h"

#include "base/EngineRate.h"
#include "export/TakenSong.h"
#include "song/KeyCodes.h"

#include <utility>

namespace tactus {

namespace {

constexpr double kMicroseconds = 1e6; // Standard: in a second.

std::optional<Key> KeyOf(CHarmony const& key) {
    if (key.m_eMode == EKeyMode::None) {
        return {};
    }
    return Key{.tonic = key.m_nTonic, .isMinor = key.m_eMode == EKeyMode::Minor};
}

std::optional<Harmony> HarmonyOf(CHarmony const& harmony) {
    std::optional<Key> const key = KeyOf(harmony);
    if (!key) {
        return {};
    }
    return Harmony{.key = *key,
                   .plain = PlainKey(harmony),
                   .camelot = CamelotCode(harmony),
                   .openKey = OpenKeyCode(harmony),
                   .confidence = static_cast<double>(harmony.m_fConfidence),
                   .tuning = static_cast<double>(harmony.m_fTuningCents)};
}

std::vector<Candidate> CandidatesOf(CTempoCandidates const& readings) {
    std::vector<Candidate> candidates;
    for (CTempoCandidate const& reading : readings.m_vCandidates) {
        candidates.push_back({.tempo = static_cast<double>(reading.m_fBpm),
                              .times = reading.m_nTimes,
                              .over = reading.m_nOver,
                              .score = static_cast<double>(reading.m_fScore)});
    }
    return candidates;
}

Envelope EnvelopeOf(CPfPcmThumbnail const& thumbnail) {
    Envelope envelope;
    std::span<float const> const elements = thumbnail.Elements();
    if (!elements.empty()) {
        envelope.step = static_cast<double>(thumbnail.GetSamplesPerElement()) / kEngineRateHz;
        envelope.values.assign(elements.begin(), elements.end());
    }
    return envelope;
}

Source SourceOf(CDecodeReport const& report) {
    return {.decoder = report.m_sDecoder,
            .rate = report.m_nFileRate,
            .channels = report.m_nChannels,
            .packets = report.m_nPackets,
            .badPackets = report.m_nBadPackets,
            .promisedSeconds = report.m_dPromisedSeconds,
            .heardSeconds = report.m_dHeardSeconds,
            .isDamaged = report.IsDamaged()};
}

Problem ProblemOf(EDecodeProblem problem) {
    switch (problem) {
    case EDecodeProblem::None:
        return Problem::None;
    case EDecodeProblem::Cancelled:
        return Problem::Cancelled;
    case EDecodeProblem::SystemError:
        return Problem::CannotOpen;
    case EDecodeProblem::IsFolder:
    case EDecodeProblem::NotRegular:
        return Problem::NotAFile;
    case EDecodeProblem::Empty:
        return Problem::Empty;
    case EDecodeProblem::Vanished:
    case EDecodeProblem::Changed:
        return Problem::Changed;
    case EDecodeProblem::NotAudio:
        return Problem::NotAudio;
    case EDecodeProblem::OtherKind:
    case EDecodeProblem::FreeFormat:
        return Problem::OtherKind;
    case EDecodeProblem::BrokenContainer:
        return Problem::Broken;
    case EDecodeProblem::NoAudio:
        return Problem::NoSound;
    case EDecodeProblem::Protected:
        return Problem::Protected;
    case EDecodeProblem::UnknownCodec:
    case EDecodeProblem::Undecodable:
    case EDecodeProblem::Unmixable:
    case EDecodeProblem::NoAudioForTooLong:
        return Problem::CannotDecode;
    case EDecodeProblem::BadRate:
        return Problem::BadRate;
    case EDecodeProblem::TooLong:
        return Problem::TooLong;
    case EDecodeProblem::NoMemory:
        break;
    }
    return Problem::NoMemory;
}

} // namespace

Problem ProblemOf(CAnalysisOutcome const& outcome) {
    switch (outcome.m_problem) {
    case EAnalysisProblem::None:
        return Problem::None;
    case EAnalysisProblem::NotDecoded:
        return ProblemOf(outcome.m_report.m_problem);
    case EAnalysisProblem::NoBeat:
        return Problem::NoBeat;
    case EAnalysisProblem::NoThread:
    case EAnalysisProblem::NoMemory:
        break;
    }
    return Problem::NoMemory;
}

Refusal RefusalOf(EWriteProblem problem) {
    switch (problem) {
    case EWriteProblem::None:
        return Refusal::None;
    case EWriteProblem::OtherExtension:
    case EWriteProblem::LinkTarget:
    case EWriteProblem::OtherFormat:
    case EWriteProblem::NotMpegAudio:
    case EWriteProblem::OtherContent:
        return Refusal::NotMp3;
    case EWriteProblem::Damaged:
    case EWriteProblem::EndsEarly:
        return Refusal::NotWhole;
    case EWriteProblem::Changed:
    case EWriteProblem::TempoChanged:
        return Refusal::Changed;
    case EWriteProblem::InUse:
        return Refusal::InUse;
    case EWriteProblem::NotWritable:
    case EWriteProblem::NoTemporaryFile:
    case EWriteProblem::MayNotReplace:
        return Refusal::NotAllowed;
    case EWriteProblem::TagUnreadable:
    case EWriteProblem::UnknownData:
    case EWriteProblem::UnknownFrameId:
    case EWriteProblem::EncodedFrames:
    case EWriteProblem::NotProven:
        return Refusal::Tag;
    case EWriteProblem::FileTooLarge:
    case EWriteProblem::FileSizeLimit:
    case EWriteProblem::TagTooLarge:
        return Refusal::TooLarge;
    case EWriteProblem::DiskFull:
        return Refusal::DiskFull;
    case EWriteProblem::NoMemory:
        return Refusal::NoMemory;
    case EWriteProblem::WriteFailed:
        break;
    }
    return Refusal::Disk;
}

namespace {

void TakeBeats(CTakenSong const& taken, Song& song) {
    song.beatsPerMeasure = taken.m_beats.m_nBeatsPerMeasure;
    song.beatConfidence = static_cast<double>(taken.m_beats.m_fBeatConfidence);
    song.downbeatConfidence = static_cast<double>(taken.m_beats.m_fDownbeatConfidence);
    song.beats = taken.m_beats.Beats();
    song.downbeats = taken.m_beats.Downbeats();
    for (std::int64_t const mark : taken.m_positions.m_vMarks) {
        double const seconds = static_cast<double>(mark) / kEngineRateHz;
        if (seconds <= taken.m_dSeconds) {
            song.measures.push_back(seconds);
        }
    }
}

void Take(CTakenSong const& taken, Song& song) {
    song.seconds = taken.m_dSeconds;
    song.tempo = taken.m_dTempo;
    song.confidence = static_cast<double>(taken.m_candidates.m_fConfidence);
    song.candidates = CandidatesOf(taken.m_candidates);
    song.key = KeyOf(taken.m_key);
    song.harmony = HarmonyOf(taken.m_harmony);
    TakeBeats(taken, song);
    song.energyAccents = taken.m_vEnergyAccents;
    song.bassAccents = taken.m_vBassAccents;
    song.mixPoints = {.introEnd = taken.m_dIntroEnd,
                      .outroStart = taken.m_dOutroStart,
                      .fade = taken.m_vFades,
                      .intro = taken.m_vIntroMixes,
                      .outro = taken.m_vOutroMixes};
    song.fingerprint = {.start = static_cast<double>(taken.m_print.m_nMicroseconds) / kMicroseconds,
                        .values = taken.m_print.m_vValues};
}

/// What is told of every song, heard or not.
Song Told(CAnalysisOutcome const& outcome, CHeardSong heard) {
    Song song;
    song.problem = tactus::ProblemOf(outcome);
    song.systemError = outcome.m_report.m_nError;
    song.source = SourceOf(outcome.m_report);
    song.evidence = std::make_shared<Evidence const>(Evidence{std::move(heard)});
    return song;
}

} // namespace

Song SongOf(CAnalysisOutcome const& outcome) {
    CHeardSong heard;
    heard.m_outcome = outcome;
    return Told(outcome, std::move(heard));
}

Song SongOf(CSongProfile const& profile, bool keepEnvelopes) {
    CHeardSong const heard = HeardSongOf(profile, keepEnvelopes);
    CTakenSong const taken = TakenSongOf({}, {}, heard);
    Song song = Told(taken.m_outcome, heard);
    if (heard.m_facts) {
        Take(taken, song);
        song.heardTempo = static_cast<double>(heard.m_facts->m_fHeardBpm);
    }
    if (heard.m_facts && keepEnvelopes) {
        song.energy = EnvelopeOf(profile.m_energy);
        song.bass = EnvelopeOf(profile.m_bass);
    }
    return song;
}

} // namespace tactus
