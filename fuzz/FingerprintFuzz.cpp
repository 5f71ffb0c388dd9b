// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Any bytes as the full and the compact form of a print: what was read is written back, and the
// prints can be compared with each other and with any data.

#include "FuzzFile.h"
#include "engine/print/Fingerprint.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr std::size_t kFullHeaderBytes = 9;     // Fixed: format, time.
constexpr std::size_t kCompactHeaderBytes = 13; // Fixed: format, half a time, extremes.
constexpr std::uint8_t kWrittenFormat = 4;      // Fixed: the format written.

/// What `copy` writes, which is as long as it says, and nothing for one byte less.
template <typename Copy>
FuzzBytes Written(Copy const& copy) {
    std::uint32_t size = 0;
    FUZZ_REQUIRE(copy(nullptr, &size));
    FuzzBytes bytes(size);
    std::uint32_t less = size - 1;
    FUZZ_REQUIRE(!copy(bytes.data(), &less));
    FUZZ_REQUIRE(copy(bytes.data(), &size));
    return bytes;
}

FuzzBytes Full(CFingerprint const& print) {
    return Written(
        [&](std::uint8_t* buf, std::uint32_t* size) { return print.CopyToMemory(buf, size); });
}

FuzzBytes Compact(CFingerprint const& print) {
    return Written([&](std::uint8_t* buf, std::uint32_t* size) {
        return print.CopyToCompactMemory(buf, size);
    });
}

/// All but the format byte comes back, and whole values only.
void CheckFull(CFingerprint& print, std::uint8_t const* data, std::uint32_t size) {
    bool const isLong = size > kFullHeaderBytes;
    FUZZ_REQUIRE(print.BuildFromMemory(data, size) == isLong);
    if (!isLong) {
        return;
    }
    FuzzBytes const back = Full(print);
    FUZZ_REQUIRE(back.size() == size - (size - kFullHeaderBytes) % 4);
    FUZZ_REQUIRE(back[0] == kWrittenFormat);
    FUZZ_REQUIRE(std::equal(back.begin() + 1, back.end(), data + 1));
    FUZZ_REQUIRE(print.GetMin() <= 0.0f && print.GetMax() >= 0.0f);
    FUZZ_REQUIRE(Compact(print).size() == kCompactHeaderBytes + print.GetValues().size());
}

/// The header comes back; a value by one step less at the most, where the steps are exact enough.
void CheckCompact(CFingerprint& print, std::uint8_t const* data, std::uint32_t size) {
    bool const isReadable = size > kCompactHeaderBytes && data[0] >= kWrittenFormat;
    FUZZ_REQUIRE(print.BuildFromCompactMemory(data, size) == isReadable);
    if (!isReadable) {
        return;
    }
    FuzzBytes const back = Compact(print);
    FUZZ_REQUIRE(back.size() == size && back[0] == kWrittenFormat);
    FUZZ_REQUIRE(std::equal(back.begin() + 1, back.begin() + kCompactHeaderBytes, data + 1));
    float const range = print.GetMax() - print.GetMin();
    // Where the offset is no larger than the range, rounding costs less than a step of range/255.
    bool const isExact = std::isfinite(range) && range > 1e-30f && std::abs(print.GetMin()) < range;
    for (std::size_t i = kCompactHeaderBytes; i < back.size() && isExact; ++i) {
        FUZZ_REQUIRE(back[i] == data[i] || back[i] + 1 == data[i]);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    auto const length = static_cast<std::uint32_t>(size);
    CSmartPtr<CFingerprint> full;
    CSmartPtr<CFingerprint> compact;
    full.Create();
    compact.Create();
    CheckFull(*full.Get(), data, length);
    CheckCompact(*compact.Get(), data, length);

    float averages[2] = {};
    (void)full->IsMatching(compact.Get(), &averages[0], &averages[1]);
    (void)compact->IsMatching(full.Get(), &averages[0], &averages[1]);
    std::vector<float> samples(size / sizeof(float));
    if (!samples.empty()) {
        std::memcpy(samples.data(), data, samples.size() * sizeof(float));
    }
    auto const count = static_cast<std::uint32_t>(samples.size());
    for (CFingerprint const* print : {full.Get(), compact.Get()}) {
        std::int32_t position = -1;
        bool const isFound =
            print->DoesPrintMatch(samples.data(), count, INT32_MIN, INT32_MAX, &position);
        FUZZ_REQUIRE(isFound == (position >= 0));
        FUZZ_REQUIRE(!isFound || static_cast<std::uint32_t>(position) < count);
    }
    return 0;
}
