// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Any bytes as an archive of objects, of a date, of a print and of positions. What was read is
// stored and read once more: the second reading must store the same bytes.
//
// Input: a byte that says what the archive holds, the archive.

#include "FuzzFile.h"
#include "IDTag/Archive.h"
#include "engine/ProfileResults.h"
#include "engine/print/Fingerprint.h"

namespace {

constexpr std::size_t kMostElements = std::size_t{1} << 20U; // Fixed: an archive's list or print.

/// Through `read` and `write` again, and the bytes stay.
template <typename Value, typename Serialize>
void CheckStored(Value& value, Value& copy, Serialize const& serialize) {
    CMemoryArchive stored;
    serialize(stored, value);
    CMemoryArchive load(stored.GetBytes());
    serialize(load, copy);
    FUZZ_REQUIRE(load.GetAvailable() == 0);
    CMemoryArchive again;
    serialize(again, copy);
    FUZZ_REQUIRE(again.GetBytes() == stored.GetBytes());
}

void SerializeObject(CMemoryArchive& archive, CArchiveObject& object) {
    if (archive.IsStoring() != 0) {
        archive << object;
    } else {
        archive >> object;
    }
}

void CheckObjects(FuzzBytes const& bytes) {
    CMemoryArchive in(bytes);
    std::uint64_t left = 0;
    do {
        left = in.GetAvailable();
        CArchiveObject object;
        CArchiveObject copy;
        in >> object;
        CheckStored(object, copy, SerializeObject);
    } while (in.GetAvailable() < left);
}

void CheckDate(FuzzBytes const& bytes) {
    CMemoryArchive in(bytes);
    CSysTime time;
    CSysTime copy;
    time.Serialize(in);
    CheckStored(time, copy,
                [](CMemoryArchive& archive, CSysTime& value) { value.Serialize(archive); });
}

void CheckPrint(FuzzBytes const& bytes) {
    CMemoryArchive in(bytes);
    CSmartPtr<CFingerprint> print;
    CSmartPtr<CFingerprint> copy;
    print.Create();
    copy.Create();
    print->Serialize(&in);
    FUZZ_REQUIRE(print->GetValues().size() <= kMostElements);
    CheckStored(*print.Get(), *copy.Get(),
                [](CMemoryArchive& archive, CFingerprint& value) { value.Serialize(&archive); });
}

void CheckPositions(FuzzBytes const& bytes) {
    CMemoryArchive in(bytes);
    CProfileResults::CPositions list;
    CProfileResults::CPositions copy;
    CProfileResults::Serialize(&in, list);
    FUZZ_REQUIRE(list.GetCount() <= kMostElements);
    CheckStored(list, copy, [](CMemoryArchive& archive, CProfileResults::CPositions& value) {
        CProfileResults::Serialize(&archive, value);
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size == 0) {
        return 0;
    }
    FuzzBytes const bytes(data + 1, data + size);
    switch (data[0] % 4) {
    case 0:
        CheckObjects(bytes);
        break;
    case 1:
        CheckDate(bytes);
        break;
    case 2:
        CheckPrint(bytes);
        break;
    default:
        CheckPositions(bytes);
        break;
    }
    return 0;
}
