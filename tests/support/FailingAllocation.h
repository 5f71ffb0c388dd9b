// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <limits>

/// While one of these lives, every `new (std::nothrow) T[n]` of its thread returns
/// null, and in the engine's tests every `calloc`. One at a time.
class CFailingAllocation {
public:
    static constexpr int kEvery = std::numeric_limits<int>::max() / 2;

    /// `passing`: so many come through first; `failing`: so many fail then.
    explicit CFailingAllocation(int passing = 0, int failing = kEvery);
    ~CFailingAllocation();
    CFailingAllocation(CFailingAllocation const&) = delete;
    CFailingAllocation& operator=(CFailingAllocation const&) = delete;

    /// How many were asked for so far.
    [[nodiscard]] static int GetCount();
};
