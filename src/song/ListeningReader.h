// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "engine/PcmReader.h"

#include <functional>
#include <span>

/// Lets others hear the samples that the engine reads, once and in its order.
/// Thread: one thread at a time.
class CListeningReader final : public IPcmReader {
public:
    using CListener = std::function<void(std::span<float const>)>;

    /// `reader` must outlive it. An empty `listener` is none.
    explicit CListeningReader(IPcmReader& reader, CListener listener = {})
        : m_reader(reader), m_listener(std::move(listener)) {}

    CStatus IsValid() override { return m_reader.IsValid(); }
    CStatus GetSampleRate(std::uint32_t* rate) override { return m_reader.GetSampleRate(rate); }
    CStatus GetStreamLength(std::int64_t* bytes) override {
        return m_reader.GetStreamLength(bytes);
    }
    CStatus GetSampleCount(std::int64_t* count) override { return m_reader.GetSampleCount(count); }
    CStatus GetFormatInfo(std::uint8_t* record, std::uint32_t* bitRate) override {
        return m_reader.GetFormatInfo(record, bitRate);
    }

    /// What can't be loaded isn't heard.
    CStatus LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t byteCount) override {
        CStatus const status = m_reader.LoadPcm(dest, byteOffset, byteCount);
        if (status == kStatusOk && m_listener) {
            m_listener({reinterpret_cast<float const*>(dest), byteCount / sizeof(float)});
        }
        return status;
    }

private:
    IPcmReader& m_reader;
    CListener m_listener;
};
