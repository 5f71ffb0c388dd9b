// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Status.h"

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <thread>

class CAudioStream;

/// Reads an open stream on a thread of its own, 24 seconds ahead of whoever takes the samples,
/// so that a song is decoded and heard at the same time. The stream is this object's until it is
/// gone. Thread: one thread at a time, beside its own.
class CReadAhead {
public:
    /// Begins to read `stream`, which must outlive it. Throws when there is no memory or no thread.
    explicit CReadAhead(CAudioStream& stream);

    /// Waits for the block at hand.
    ~CReadAhead();
    CReadAhead(CReadAhead const&) = delete;
    CReadAhead& operator=(CReadAhead const&) = delete;

    /// The stream's `Read`, of the same samples in the same order.
    CStatus Read(std::span<float> samples);

    /// The stream's `Finish`, which is done on the thread; waits for it.
    CStatus Finish();

private:
    void ReadAll();
    CStatus ReadBlocks();
    bool WaitForRoom(std::size_t count);
    std::size_t WaitForSamples();

    CAudioStream& m_stream;
    std::int64_t m_nLeft; // samples of the stream that are not read yet; the thread's
    std::unique_ptr<std::int16_t[]> m_pRing;

    std::mutex m_lock; // guards what follows
    std::condition_variable m_roomMade;
    std::condition_variable m_samplesRead;
    std::size_t m_nRead = 0;  // samples put into the ring
    std::size_t m_nTaken = 0; // samples taken out of it
    bool m_bStopping = false;
    bool m_bEnded = false; // the thread does nothing more
    CStatus m_status = kStatusOk;

    std::thread m_thread;
};
