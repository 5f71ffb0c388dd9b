// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeWatch.h"
#include "platform/SourceFile.h"

#include <cstdint>
#include <optional>

/// Samples of each channel that a bare MPEG layer III file decodes to, its encoder's delay and
/// padding left out, by the headers of its frames alone: each says where the next one lies. A
/// twentieth of what `CountPackets` takes for the same. `start` is where the frames of sound
/// begin, in bytes, behind tags and the frame that holds the encoder's note.
/// Returns: nothing for a file that is unusual in any way, be it damaged, cut short, joined from
/// others or followed by what looks like frames; and once `watch` wants an end. The place in
/// `file` stays.
std::optional<std::int64_t> CountMpegSamples(CSourceFile& file, std::int64_t start,
                                             CDecodeWatch& watch);
