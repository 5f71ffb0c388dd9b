// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/ProblemName.h"

namespace {

char const* DecodeProblemName(EDecodeProblem problem) {
    switch (problem) {
    case EDecodeProblem::None:
        return "";
    case EDecodeProblem::Cancelled:
        return "cancelled";
    case EDecodeProblem::SystemError:
        return "cannotOpen";
    case EDecodeProblem::IsFolder:
        return "isFolder";
    case EDecodeProblem::NotRegular:
        return "notAFile";
    case EDecodeProblem::Empty:
        return "empty";
    case EDecodeProblem::Vanished:
        return "vanished";
    case EDecodeProblem::Changed:
        return "changed";
    case EDecodeProblem::NotAudio:
        return "notAudio";
    case EDecodeProblem::OtherKind:
        return "otherKind";
    case EDecodeProblem::FreeFormat:
        return "freeFormat";
    case EDecodeProblem::BrokenContainer:
        return "broken";
    case EDecodeProblem::NoAudio:
        return "noSound";
    case EDecodeProblem::Protected:
        return "protected";
    case EDecodeProblem::UnknownCodec:
        return "unknownCodec";
    case EDecodeProblem::Undecodable:
        return "cannotDecode";
    case EDecodeProblem::Unmixable:
        return "cannotMix";
    case EDecodeProblem::BadRate:
        return "badRate";
    case EDecodeProblem::TooLong:
        return "tooLong";
    case EDecodeProblem::NoMemory:
        return "noMemory";
    case EDecodeProblem::NoAudioForTooLong:
        break;
    }
    return "noSoundForTooLong";
}

} // namespace

char const* ProblemName(CAnalysisOutcome const& outcome) {
    switch (outcome.m_problem) {
    case EAnalysisProblem::None:
        return "";
    case EAnalysisProblem::NotDecoded:
        return DecodeProblemName(outcome.m_report.m_problem);
    case EAnalysisProblem::NoBeat:
        return "noBeat";
    case EAnalysisProblem::NoThread:
        return "noThread";
    case EAnalysisProblem::NoMemory:
        break;
    }
    return "noMemory";
}

char const* ContainerName(EContainer container) {
    switch (container) {
    case EContainer::Unknown:
        return "";
    case EContainer::MpegAudio:
        return "mpeg";
    case EContainer::AdtsAac:
        return "adts";
    case EContainer::Mp4:
        return "mp4";
    case EContainer::Wav:
        return "wav";
    case EContainer::Wave64:
        return "wave64";
    case EContainer::Aiff:
        return "aiff";
    case EContainer::Caf:
        return "caf";
    case EContainer::Flac:
        return "flac";
    case EContainer::Ogg:
        return "ogg";
    case EContainer::Asf:
        return "asf";
    case EContainer::Au:
        return "au";
    case EContainer::Matroska:
        return "matroska";
    case EContainer::MonkeysAudio:
        return "ape";
    case EContainer::TrueAudio:
        return "tta";
    case EContainer::WavPack:
        break;
    }
    return "wavpack";
}

char const* TempoSourceName(ETempoSource source) {
    switch (source) {
    case ETempoSource::Tag:
        return "tag";
    case ETempoSource::Analysis:
        return "analysis";
    case ETempoSource::Length:
        return "length";
    case ETempoSource::None:
        break;
    }
    return "";
}

char const* StartNoteName(EStartNote note) {
    switch (note) {
    case EStartNote::None:
        return "";
    case EStartNote::EncoderTag:
        return "encoderTag";
    case EStartNote::TrackTable:
        return "trackTable";
    case EStartNote::StreamHeader:
        break;
    }
    return "streamHeader";
}
