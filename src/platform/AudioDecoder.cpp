// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioDecoder.h"

#include "platform/AudioStream.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace {

constexpr std::size_t kFirstSamples = std::size_t{1} << 24; // Fixed: six minutes, 64 MiB.

/// Reads all of an open stream. The room for it grows with what is decoded: a damaged file may
/// promise hours that aren't there.
CStatus ReadAll(CAudioStream& stream, CDecodedAudio& audio) {
    auto const count = static_cast<std::size_t>(stream.GetCount());
    audio.m_nCount = stream.GetCount();
    audio.m_pSamples.reset(); // before there is another one
    for (std::size_t done = 0; done < count;) {
        std::size_t const room = std::min(count, std::max(2 * done, kFirstSamples));
        auto samples = std::make_unique_for_overwrite<float[]>(room);
        std::copy_n(audio.m_pSamples.get(), done, samples.get());
        audio.m_pSamples = std::move(samples);
        CStatus const status = stream.Read({audio.m_pSamples.get() + done, room - done});
        if (status != kStatusOk) {
            return status;
        }
        done = room;
    }
    return stream.Finish();
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
