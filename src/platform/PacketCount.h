// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeWatch.h"
#include "platform/LibAv.h"

#include <cstdint>

/// What the packets of a stream come to, by their own words.
/// Units: frames at the file's rate.
struct CPacketCount {
    std::int64_t m_nFrames = 0;       // after decoding
    std::int64_t m_nSkippedStart = 0; // of those before, that the decoder drops at the start
};

/// Reads `format` to its end and adds up the packets of `stream`, none of which is decoded. It is
/// right for whole files; a damaged packet or foreign bytes may come to something else.
CPacketCount CountPackets(AVFormatContext& format, AVStream const& stream, CDecodeWatch& watch);

/// True when a stream's length follows from the length of its data.
bool IsPlainPcm(AVCodecParameters const& codec);

/// Frames of plain PCM between `dataStart` and the end of the file, of which `promised` are the
/// stream's where that is known and not more; 0 is not known.
/// Units: bytes for the first two.
std::int64_t CountPcmFrames(AVCodecParameters const& codec, std::int64_t dataStart,
                            std::int64_t fileEnd, std::int64_t promised);
