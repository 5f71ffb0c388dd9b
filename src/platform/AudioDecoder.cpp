// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioDecoder.h"

#include "platform/AudioStream.h"

#include <cstddef>
#include <new>

namespace {

/// Reads all of an open stream.
CStatus ReadAll(CAudioStream& stream, CDecodedAudio& audio) {
    auto const count = static_cast<std::size_t>(stream.GetCount());
    audio.m_nCount = stream.GetCount();
    audio.m_pSamples.reset(); // before there is another one
    audio.m_pSamples = std::make_unique_for_overwrite<float[]>(count);
    CStatus const status = stream.Read({audio.m_pSamples.get(), count});
    return status == kStatusOk ? stream.Finish() : status;
}

} // namespace

CStatus CAudioDecoder::Decode(std::string const& path, CDecodedAudio& audio) {
    audio = {};
    CAudioStream stream(m_pCancel);
    stream.SetPatience(m_patience);
    CStatus status = stream.Open(path);
    try {
        status = status == kStatusOk ? ReadAll(stream, audio) : status;
        while (stream.MustRestart()) {
            status = stream.Restart();
            status = status == kStatusOk ? ReadAll(stream, audio) : status;
        }
        m_report = stream.GetReport();
    } catch (std::bad_alloc const&) {
        status = kStatusFailure;
        m_report = stream.GetReport();
        m_report.m_problem = EDecodeProblem::NoMemory;
    }
    if (status != kStatusOk) {
        audio = {};
    }
    return status;
}
