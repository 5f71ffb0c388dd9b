// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/Status.h"
#include "engine/notes/BlockedList.h"

#include <cstdint>

/// One bass note heard.
struct CPfNoteDetection {
    CPfNoteDetection() = default;
    CPfNoteDetection(std::uint32_t note, std::int64_t time, double strength)
        : m_nTime(time),
          m_nNote(static_cast<std::uint16_t>(note)),
          m_fStrength(static_cast<float>(strength)) {}

    std::int64_t m_nTime = 0;  // microseconds
    std::uint16_t m_nNote = 0; // 0 .. 23, semitones above C at 32.703 Hz
    float m_fStrength = 0.0f;  // just below 1; NaN for a note at the stream's very end
};

/// Notes heard, the strongest first but for the ones that `AddDetection` tells of. Owns its items.
/// Thread: one thread at a time.
class CPfNoteMap {
public:
    CPfNoteMap() = default;
    CPfNoteMap(CPfNoteMap const&) = delete;
    CPfNoteMap& operator=(CPfNoteMap const&) = delete;
    virtual ~CPfNoteMap() = default;

    /// Puts a note in its place: behind all when it is weaker than every one so far, else in front
    /// of those that are not stronger, the newest first among equals. The first item is never
    /// compared, so a new strongest one becomes the second, and so does one without a strength
    /// (NaN); in a list of one it becomes the first. Pointers from `EnumItems` lapse.
    /// Returns: `kStatusOk`.
    CStatus AddDetection(std::uint32_t note, std::int64_t time, float strength);

    /// Keeps an item only if none kept so far, in list order, lies within `window` either way, its
    /// ends included, whatever the notes.
    /// Units: microseconds. Returns: `kStatusOk`.
    CStatus RemoveSimilarItems(std::int64_t window);

    /// Drops notes that `RemoveSimilarItems(window)` is sure to remove, given that every note to
    /// come has a time of `horizon` or later, so that a long stream needs no more memory than a
    /// short one. What that leaves in the end is the same, order included. The first `strongest`
    /// notes stay, so that notes without a strength come to their places among them, as long as
    /// fewer than half as many notes are added from the first of these on; so does the last note.
    /// With a note without strength in the map nothing is dropped. `window`, 0 or more, and
    /// `strongest`, 2 or more, must be those of the calls before.
    void Thin(std::int64_t window, std::int64_t horizon, std::uint32_t strongest);

    /// How many notes there would be if none had been dropped as similar before their time.
    [[nodiscard]] std::uint32_t GetHeardCount() const { return m_items.GetCount() + m_nThinned; }

    /// The i-th item, which stays the map's. Returns: `kStatusNothing`, `item` untouched, outside
    /// [0, count).
    CStatus EnumItems(std::int32_t i, CPfNoteDetection** item);

    /// Hook for a listing of the map; does nothing.
    void ReportItems() const {}

    [[nodiscard]] std::uint32_t GetCount() const { return m_items.GetCount(); }

private:
    // Tuned: BM_NoteMapAdd; 4 KiB a block.
    static constexpr std::uint32_t kBlockItems = 256;
    using CItems = CBlockedList<CPfNoteDetection, kBlockItems>;

    [[nodiscard]] std::uint32_t PlaceOf(float strength);

    CItems m_items;
    float m_fSmallest = 0.0f;
    std::uint32_t m_nThinned = 0;   // notes that `Thin` has dropped
    std::uint32_t m_nStrongest = 0; // so many at the front are as if it had not
    bool m_bOrdered = true;         // all notes have strengths
};
