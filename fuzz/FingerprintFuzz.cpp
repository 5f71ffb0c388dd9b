// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Fingerprints from any bytes, in both forms: what is taken is given back, byte for byte in the
// full form, and comparing two of them ends.

#include "FuzzFile.h"
#include "base/SmartPtr.h"
#include "engine/Fingerprint.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    constexpr std::size_t kMostBytes = 20'000; // Fixed: larger ones only cost time.
    auto const length = static_cast<std::uint32_t>(std::min(size, kMostBytes));
    CSmartPtr<CFingerprint> full;
    CSmartPtr<CFingerprint> compact;
    full.Create();
    compact.Create();
    bool const hasFull = full->BuildFromMemory(data, length);
    bool const hasCompact = compact->BuildFromCompactMemory(data, length);
    FUZZ_REQUIRE(hasFull == (length > 9));
    FUZZ_REQUIRE(hasCompact == (length > 13 && data[0] > 3));
    if (hasFull) {
        std::uint32_t needed = 0;
        FUZZ_REQUIRE(full->CopyToMemory(nullptr, &needed));
        FUZZ_REQUIRE(needed == 9 + (length - 9) / 4 * 4);
        FuzzBytes copy(needed);
        FUZZ_REQUIRE(full->CopyToMemory(copy.data(), &needed));
        FUZZ_REQUIRE(copy[0] == 4 && std::equal(copy.begin() + 1, copy.end(), data + 1));
        std::uint32_t compactNeeded = 0;
        FUZZ_REQUIRE(full->CopyToCompactMemory(nullptr, &compactNeeded));
        FuzzBytes compactCopy(compactNeeded);
        FUZZ_REQUIRE(full->CopyToCompactMemory(compactCopy.data(), &compactNeeded));
    }
    if (hasFull && hasCompact) {
        float averageOfFull = 0.0f;
        float averageOfCompact = 0.0f;
        (void)full->IsMatching(compact.Get(), &averageOfFull, &averageOfCompact);
        std::int32_t position = 0;
        auto const& values = full->GetValues();
        auto const count = static_cast<std::int32_t>(values.size());
        auto const reach = static_cast<std::int32_t>(4 * compact->GetValues().size());
        if (count > reach) {
            (void)compact->DoesPrintMatch(values.data(), static_cast<std::uint32_t>(count), 0,
                                          count - reach, &position);
        }
    }
    return 0;
}
