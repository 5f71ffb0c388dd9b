// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: open the file and find its best audio stream; decode its packets, count the frames,
// mix them down and resample them into the buffer as they come; find the length from the count and
// the container's word on the tail; cut or fill the buffer to it; look whether the file is still
// the same. Below 44100 Hz only a start is needed, as long as the count says, hence a second pass.

#include "platform/AudioDecoder.h"

#include "platform/DecodeRun.h"
#include "platform/DecodeWatch.h"
#include "platform/LastMessage.h"
#include "platform/SourceFile.h"

#include <cstdint>
#include <new>

namespace {

EDecodeProblem DecodeFile(std::string const& path, CSourceFile& source, CDecodeWatch& watch,
                          CDecodedAudio& audio, CDecodeReport& report) {
    CDecodeRun first(path, source, watch);
    EDecodeProblem problem = first.Run(0);
    std::int64_t const frames = problem == EDecodeProblem::None ? first.CountWithoutTail() : 0;
    first.Tell(report);
    // Of free format the library finds nothing, or by chance what looks like frames.
    bool const isHeard = frames > 0 && 2 * report.m_nBadPackets <= report.m_nPackets;
    bool const isForNoAudio = problem == EDecodeProblem::NoAudio || problem == EDecodeProblem::None;
    if (!isHeard && isForNoAudio && report.m_container == EContainer::MpegAudio &&
        IsFreeFormat(source)) {
        return EDecodeProblem::FreeFormat;
    }
    if (problem != EDecodeProblem::None) {
        return problem;
    }
    if (frames <= 0 || !first.IsSlow()) {
        return first.Finish(frames, audio);
    }
    CDecodeRun second(path, source, watch);
    problem = second.Run(frames);
    return problem == EDecodeProblem::None ? second.Finish(frames, audio) : problem;
}

} // namespace

CStatus CAudioDecoder::Decode(std::string const& path, CDecodedAudio& audio) {
    ForgetMessage();
    audio = {};
    m_report = {};
    CDecodeWatch watch(m_pCancel, m_patience);
    EDecodeProblem& problem = m_report.m_problem;
    try {
        CSourceFile source;
        problem = source.Open(path);
        if (problem == EDecodeProblem::None) {
            problem = DecodeFile(path, source, watch, audio, m_report);
            problem = watch.Explain(source.Explain(problem));
        }
        m_report.m_identity = source.GetIdentity();
        m_report.m_nError = problem == EDecodeProblem::SystemError ? source.GetError() : 0;
    } catch (std::bad_alloc const&) {
        problem = EDecodeProblem::NoMemory;
    }
    m_report.m_sDetail = LastMessage();
    if (problem == EDecodeProblem::None) {
        return kStatusOk;
    }
    audio = {};
    return problem == EDecodeProblem::Cancelled ? kStatusNothing : kStatusFailure;
}
