// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/TagLibVersions.h"

#include <algorithm>
#include <cstdint>
#include <taglib/tiostream.h>

/// Where a stream stands after a seek. A place ahead of its begin is its begin; one too far for
/// 64 bits is its end.
inline std::int64_t SoughtPlace(TagLib::IOStream& stream, TagOffset offset,
                                TagLib::IOStream::Position position) {
    std::int64_t const base = position == TagLib::IOStream::Beginning ? 0
                              : position == TagLib::IOStream::Current ? stream.tell()
                                                                      : stream.length();
    std::int64_t place = 0;
    bool const isFar = __builtin_add_overflow(base, offset, &place);
    return isFar ? stream.length() : std::max<std::int64_t>(place, 0);
}
