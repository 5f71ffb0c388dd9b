// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "tactus/SongValue.h"

#include "engine/envelope/Tempo.h"
#include "engine/notes/KeyDetector.h"

#include <algorithm>
#include <utility>

namespace tactus {

namespace {

constexpr double kMicroseconds = 1e6; // Standard: in a second.

double SecondsOf(std::int64_t position) {
    return static_cast<double>(position) / kEngineRateHz;
}

std::vector<double> SecondsOf(CProfileResults::CPositions const& positions) {
    std::vector<double> seconds;
    seconds.reserve(positions.GetCount());
    for (std::int64_t const position : positions) {
        seconds.push_back(SecondsOf(position));
    }
    return seconds;
}

std::optional<Key> KeyOf(CProfileResults const& results) {
    std::uint16_t tonic = 0;
    std::uint16_t mode = 0;
    results.GetKey(&tonic, &mode);
    if (mode != CPfKeyDetector::kMinor && mode != CPfKeyDetector::kMajor) {
        return {};
    }
    return Key{.tonic = tonic, .isMinor = mode == CPfKeyDetector::kMinor};
}

Envelope EnvelopeOf(CPfPcmThumbnail const& thumbnail) {
    Envelope envelope;
    std::span<float const> const elements = thumbnail.Elements();
    if (!elements.empty()) {
        envelope.step = SecondsOf(thumbnail.GetSamplesPerElement());
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

Song SongOf(CSongProfile profile) {
    CProfileResults const& results = profile.m_results;
    bool const hasTempo = results.GetBpm() > 0.0f;
    if (profile.IsHeard() && !hasTempo) {
        profile.m_outcome.m_problem = EAnalysisProblem::NoBeat;
    }
    Song song;
    song.problem = profile.m_bCancelled ? Problem::Cancelled : ProblemOf(profile.m_outcome);
    song.systemError = profile.m_outcome.m_report.m_nError;
    song.source = SourceOf(profile.m_outcome.m_report);
    song.evidence = std::make_shared<Evidence const>(Evidence{profile.m_outcome});
    if (song.problem != Problem::None && song.problem != Problem::NoBeat) {
        return song;
    }
    unsigned const rate = song.source.rate != 0 ? song.source.rate : kEngineRateHz;
    song.seconds = static_cast<double>(results.GetSampleCount()) / rate;
    song.tempo = hasTempo ? static_cast<double>(results.GetBpm()) : 0.0;
    song.heardTempo = static_cast<double>(std::max(profile.m_fHeardBpm, 0.0f));
    song.key = KeyOf(results);
    song.measures = SecondsOf(results.GetMeasMarks());
    CPfBeatPattern energyPattern;
    CPfBeatPattern bassPattern;
    results.GetBeatPatterns(&energyPattern, &bassPattern);
    song.energyAccents = energyPattern.GetWeights();
    song.bassAccents = bassPattern.GetWeights();
    song.mixPoints = {.introEnd = SecondsOf(results.GetIntroEnd()),
                      .outroStart = SecondsOf(results.GetOutroStart()),
                      .fade = SecondsOf(results.GetIntroFadePoints()),
                      .intro = SecondsOf(results.GetIntroSprockets()),
                      .outro = SecondsOf(results.GetOutroSprockets())};
    song.fingerprint = {.start = static_cast<double>(profile.m_pPrint->GetTime()) / kMicroseconds,
                        .values = profile.m_pPrint->GetValues()};
    song.energy = EnvelopeOf(profile.m_energy);
    song.bass = EnvelopeOf(profile.m_bass);
    return song;
}

} // namespace tactus
