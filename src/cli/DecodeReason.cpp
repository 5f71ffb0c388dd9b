// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/DecodeReason.h"

#include "cli/Message.h"

#include <array>
#include <charconv>

namespace {

std::string Seconds(double seconds, int decimals) {
    std::array<char, 400> text{}; // Derived: the largest double has 309 digits before the point.
    return {text.data(), std::to_chars(text.data(), text.data() + text.size(), seconds,
                                       std::chars_format::fixed, decimals)
                             .ptr};
}

/// "20 of 40 s", with as many decimals as it takes to see a difference, at most two.
std::string HeardOfPromised(CDecodeReport const& report) {
    constexpr int kMostDecimals = 2;
    std::string heard;
    std::string promised;
    for (int decimals = 0; heard == promised && decimals <= kMostDecimals; ++decimals) {
        heard = Seconds(report.m_dHeardSeconds, decimals);
        promised = Seconds(report.m_dPromisedSeconds, decimals);
    }
    return heard + " of " + promised + " s";
}

} // namespace

std::string DecodeReason(CDecodeReport const& report) {
    switch (report.m_problem) {
    case EDecodeProblem::None:
        break;
    case EDecodeProblem::Cancelled:
        return "cancelled";
    case EDecodeProblem::SystemError:
        return SystemReason(report.m_nError);
    case EDecodeProblem::IsFolder:
        return "is a folder, not a file";
    case EDecodeProblem::NotRegular:
        return "is not a regular file";
    case EDecodeProblem::Empty:
        return "the file is empty";
    case EDecodeProblem::Vanished:
        return "vanished while it was read";
    case EDecodeProblem::Changed:
        return "changed while it was read";
    case EDecodeProblem::NotAudio:
        return "is not an audio file that can be read";
    case EDecodeProblem::OtherKind:
        return "is of a kind that isn't read";
    case EDecodeProblem::FreeFormat:
        return "is an MP3 of free format, which isn't read";
    case EDecodeProblem::BrokenContainer:
        return "is damaged or incomplete: what it says about its audio can't be read";
    case EDecodeProblem::NoAudio:
        return "holds no audio";
    case EDecodeProblem::Protected:
        return "is protected";
    case EDecodeProblem::UnknownCodec:
        return "holds audio of a kind that can't be decoded";
    case EDecodeProblem::Undecodable:
        return "holds audio that can't be decoded";
    case EDecodeProblem::Unmixable:
        return "holds audio that can't be mixed down";
    case EDecodeProblem::BadRate:
        return "has a sample rate that can't be worked with";
    case EDecodeProblem::TooLong:
        return "is too long";
    case EDecodeProblem::NoMemory:
        return "there is not enough memory for it";
    case EDecodeProblem::NoAudioForTooLong:
        return "gave no audio for too long";
    }
    return {};
}

std::string DamageReason(CDecodeReport const& report) {
    std::string text;
    if (report.m_nBadPackets > 0) {
        text = "is damaged: " + std::to_string(report.m_nBadPackets) + " of " +
               std::to_string(report.m_nPackets) + " packets can't be decoded";
    }
    if (report.EndsEarly()) {
        text += (text.empty() ? "ends early: " : ", and it ends early: ") + HeardOfPromised(report);
    } else if (report.m_bBreaksOff) {
        text += text.empty() ? "breaks off in the middle of a frame" : ", and it breaks off";
    }
    return text;
}

std::string AnalysisReason(CAnalysisOutcome const& outcome) {
    switch (outcome.m_problem) {
    case EAnalysisProblem::None:
        break;
    case EAnalysisProblem::NotDecoded:
        return DecodeReason(outcome.m_report);
    case EAnalysisProblem::NoBeat:
        return "no beat was found in it";
    case EAnalysisProblem::NoThread:
        return "no thread can be had for its analysis";
    case EAnalysisProblem::NoMemory:
        return "there is not enough memory for its analysis";
    }
    return {};
}
