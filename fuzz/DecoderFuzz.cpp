// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A file of any bytes is decoded. It ends with samples or with a reason, never with both, and with
// no more samples than the length tells.

#include "FuzzFile.h"
#include "platform/AudioDecoder.h"

#include <cmath>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static CFuzzFolder const folder;
    static std::string const path = folder / "song.mp3";
    WriteFuzzFile(path, data, size);
    CAudioDecoder decoder;
    decoder.SetPatience(std::chrono::seconds(5));
    CDecodedAudio audio;
    CStatus const status = decoder.Decode(path, audio);
    FUZZ_REQUIRE((status == kStatusOk) == decoder.GetReason().empty());
    FUZZ_REQUIRE((status == kStatusOk) == (audio.m_nCount > 0));
    for (float const sample : audio.Samples()) {
        FUZZ_REQUIRE(std::abs(sample) <= 32768.0f / 32767.0f);
    }
    FUZZ_REQUIRE(folder.CountFiles() == 1);
    return 0;
}
