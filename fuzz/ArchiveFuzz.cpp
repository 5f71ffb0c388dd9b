// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Archives of any bytes are read as an object, a date and a list of positions; what was read and is
// written again reads the same.

#include "FuzzFile.h"
#include "IDTag/Archive.h"
#include "engine/ProfileResults.h"

#include <cstring>

namespace {

void CheckObject(FuzzBytes const& bytes) {
    CMemoryArchive source(bytes);
    CArchiveObject object;
    static_cast<CArchive&>(source) >> object;
    CMemoryArchive stored;
    static_cast<CArchive&>(stored) << object;
    CMemoryArchive again(stored.GetBytes());
    CArchiveObject copy;
    static_cast<CArchive&>(again) >> copy;
    bool const isNumber = std::holds_alternative<double>(object); // NaN differs from itself
    FUZZ_REQUIRE(isNumber || copy == object);
    CMemoryArchive dates(bytes);
    CSysTime time;
    time.Serialize(dates);
}

void CheckPositions(FuzzBytes const& bytes) {
    // The count is the record's own claim; one beyond the bytes would only append zeros.
    std::uint32_t count = 0;
    if (bytes.size() < sizeof count) {
        return;
    }
    std::memcpy(&count, bytes.data(), sizeof count);
    if (count > bytes.size() / 8) {
        return;
    }
    CProfileResults::CPositions positions;
    CMemoryArchive source(bytes);
    CProfileResults::Serialize(&source, positions);
    FUZZ_REQUIRE(positions.GetCount() == count);
    CMemoryArchive stored;
    CProfileResults::Serialize(&stored, positions);
    FUZZ_REQUIRE(stored.GetBytes().size() == 4 + 8 * std::size_t{count});
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    FuzzBytes const bytes(data, data + size);
    CheckObject(bytes);
    CheckPositions(bytes);
    return 0;
}
