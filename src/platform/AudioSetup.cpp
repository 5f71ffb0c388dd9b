// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/AudioSetup.h"

#include "platform/LastMessage.h"
#include "platform/LibAv.h"

#include <cstdarg>
#include <cstddef>

namespace {

constexpr std::size_t kLargestAllocation = std::size_t{256} << 20U; // Fixed: one block of libav.

} // namespace

void SetUpAudio() {
    av_log_set_callback([](void*, int level, char const* format, va_list arguments) {
        if (level <= AV_LOG_ERROR) {
            KeepMessage(format, arguments);
        }
    });
    av_log_set_level(AV_LOG_ERROR);
    av_max_alloc(kLargestAllocation);
}

std::string DecoderVersion() {
    return av_version_info();
}
