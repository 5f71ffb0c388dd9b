// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"
#include "platform/DecodeWatch.h"
#include "platform/LibAv.h"
#include "platform/SourceFile.h"

#include <cstdint>
#include <string>

/// The file as libav reads it. Nothing else can be opened through it.
/// Thread: one thread at a time.
class CAudioInput {
public:
    /// Both must outlive it.
    CAudioInput(CSourceFile& source, CDecodeWatch& watch) : m_source(source), m_watch(watch) {}
    CAudioInput(CAudioInput const&) = delete;
    CAudioInput& operator=(CAudioInput const&) = delete;

    /// Reads the container's header. `ignoreEdits`: as if an MP4 file had no edit list.
    /// Returns: 0 or more, or an error of libav's.
    int Open(std::string const& path, bool ignoreEdits);

    void Close() { m_format.reset(); }

    /// Null unless it is open.
    [[nodiscard]] AVFormatContext* Get() const { return m_format.get(); }

    [[nodiscard]] EContainer GetContainer() const;

private:
    static int Read(void* self, std::uint8_t* buffer, int size);
    static std::int64_t Seek(void* self, std::int64_t offset, int whence);

    CSourceFile& m_source;
    CDecodeWatch& m_watch;
    CIoPtr m_io;
    CFormatPtr m_format;
};
