// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A file of any bytes under any of our names goes through the decoder, twice: it ends with samples
// in their range or with a reason, and the same way both times, to the last count of its report.
//
// Input: a byte that chooses the extension, the file.

#include "FuzzFile.h"
#include "platform/AudioDecoder.h"
#include "platform/AudioSetup.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <mutex>

namespace {

constexpr std::array kNames = {"a.mp3", "a.wav", "a.aiff", "a.m4a", "a.caf", "a.aif", "a"};
constexpr std::chrono::seconds kPatience(5); // Fixed: below the time limit of a run.
constexpr float kLowest = -32768.0f / 32767.0f;

CDecodeReport DecodeOnce(std::string const& path, CDecodedAudio& audio) {
    CAudioDecoder decoder;
    decoder.SetPatience(kPatience);
    CStatus const status = decoder.Decode(path, audio);
    FUZZ_REQUIRE(status == kStatusOk || status == kStatusFailure);
    CDecodeReport const& report = decoder.GetReport();
    FUZZ_REQUIRE((status == kStatusOk) == (report.m_problem == EDecodeProblem::None));
    FUZZ_REQUIRE(report.m_nBadPackets >= 0 && report.m_nBadPackets <= report.m_nPackets);
    FUZZ_REQUIRE(report.m_dHeardSeconds >= 0.0 && report.m_dPromisedSeconds >= 0.0);
    FUZZ_REQUIRE((status == kStatusOk) == (audio.m_nCount > 0));
    for (float const sample : audio.Samples()) {
        FUZZ_REQUIRE(sample >= kLowest && sample <= 1.0f);
    }
    return report;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static CFuzzFolder const folder;
    static std::once_flag once;
    std::call_once(once, SetUpAudio); // as the programs' main does
    std::string const path = WriteNamedFile(folder, kNames, data, size);
    if (path.empty()) {
        return 0;
    }
    CDecodedAudio first;
    CDecodedAudio second;
    FUZZ_REQUIRE(DecodeOnce(path, first) == DecodeOnce(path, second));
    FUZZ_REQUIRE(std::ranges::equal(first.Samples(), second.Samples()));
    std::filesystem::remove(path);
    FUZZ_REQUIRE(folder.CountFiles() == 0);
    return 0;
}
