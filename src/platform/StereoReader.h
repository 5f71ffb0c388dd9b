// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"
#include "platform/StereoSource.h"

#include <memory>
#include <string>

/// A file, decoded as it is read. Its frame 0 is the sample 0 of `CAudioDecoder`, and each seek
/// comes out on the very frame that plain reading would have.
/// Thread: one thread at a time.
class CStereoReader final : public IStereoSource {
public:
    /// `rate`: frames a second that are asked for.
    explicit CStereoReader(int rate);
    ~CStereoReader() override;
    CStereoReader(CStereoReader const&) = delete;
    CStereoReader& operator=(CStereoReader const&) = delete;

    /// Opens the file at `path`, which is bytes, once. Returns: why it can't be; `None` when it is.
    EDecodeProblem Open(std::string const& path);

    bool Seek(std::int64_t frame) override;
    std::size_t Read(std::span<float> stereo) override;

private:
    struct CStream;

    std::unique_ptr<CStream> m_pStream;
};
