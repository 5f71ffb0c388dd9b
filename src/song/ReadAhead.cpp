// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/ReadAhead.h"

#include "platform/AudioStream.h"
#include "platform/SampleQueue.h"

#include <algorithm>

namespace {

// Fixed: 24 seconds, two megabytes. The engine filters half a minute at once; decoding must not
// run out of room meanwhile. Whoever has to wait sleeps until an eighth of it is there, or free, so
// that wake-ups are rare.
constexpr std::size_t kRingSamples = std::size_t{1} << 20U;
constexpr std::size_t kEnough = kRingSamples / 8;
constexpr std::size_t kBlockSamples = std::size_t{1} << 13U; // read at once

} // namespace

CReadAhead::CReadAhead(CAudioStream& stream)
    : m_stream(stream),
      m_nLeft(stream.GetCount()),
      m_pRing(std::make_unique_for_overwrite<std::int16_t[]>(kRingSamples)),
      m_thread([this] { ReadAll(); }) {
}

CReadAhead::~CReadAhead() {
    {
        std::scoped_lock const guard(m_lock);
        m_bStopping = true;
    }
    m_roomMade.notify_one();
    m_thread.join();
}

void CReadAhead::ReadAll() {
    CStatus const status = ReadBlocks();
    {
        std::scoped_lock const guard(m_lock);
        m_status = status;
        m_bEnded = true;
    }
    m_samplesRead.notify_one();
}

CStatus CReadAhead::ReadBlocks() {
    std::size_t read = 0;
    while (m_nLeft > 0) {
        auto const left = static_cast<std::size_t>(m_nLeft);
        std::size_t const count =
            std::min(left, kBlockSamples); // blocks never cross the ring's end
        if (!WaitForRoom(count)) {
            return kStatusNothing;
        }
        CStatus const status = m_stream.Read(std::span(m_pRing.get() + read % kRingSamples, count));
        if (status != kStatusOk) {
            return status;
        }
        read += count;
        m_nLeft -= static_cast<std::int64_t>(count);
        bool isEnough = false;
        {
            std::scoped_lock const guard(m_lock);
            m_nRead = read;
            isEnough = m_nRead - m_nTaken >= kEnough;
        }
        if (isEnough) {
            m_samplesRead.notify_one();
        }
    }
    return m_stream.Finish();
}

/// Returns: false when nobody wants more.
bool CReadAhead::WaitForRoom(std::size_t count) {
    std::unique_lock lock(m_lock);
    auto const room = [&] { return kRingSamples - (m_nRead - m_nTaken); };
    if (!m_bStopping && room() < count) {
        m_roomMade.wait(lock, [&] { return m_bStopping || room() >= kEnough; });
    }
    return !m_bStopping;
}

/// Waits until there are samples. Returns: how many there are; 0 when there are no more to come.
std::size_t CReadAhead::WaitForSamples() {
    std::unique_lock lock(m_lock);
    if (m_nRead == m_nTaken) {
        m_samplesRead.wait(lock, [&] { return m_bEnded || m_nRead - m_nTaken >= kEnough; });
    }
    return m_nRead - m_nTaken;
}

CStatus CReadAhead::Read(std::span<float> samples) {
    while (!samples.empty()) {
        std::size_t const there = WaitForSamples();
        std::size_t const place = m_nTaken % kRingSamples; // nobody else writes it
        std::size_t const count = std::min({samples.size(), there, kRingSamples - place});
        if (count == 0) {
            std::scoped_lock const guard(m_lock);
            return m_status != kStatusOk ? m_status : kStatusFailure;
        }
        WidenPcm({m_pRing.get() + place, count}, samples.data());
        samples = samples.subspan(count);
        bool isRoomMade = false;
        {
            std::scoped_lock const guard(m_lock);
            m_nTaken += count;
            isRoomMade = kRingSamples - (m_nRead - m_nTaken) >= kEnough;
        }
        if (isRoomMade) {
            m_roomMade.notify_one();
        }
    }
    return kStatusOk;
}

CStatus CReadAhead::Finish() {
    std::unique_lock lock(m_lock);
    m_samplesRead.wait(lock, [&] { return m_bEnded; });
    return m_status;
}
