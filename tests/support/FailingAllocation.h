// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// While one of these lives, every `new (std::nothrow) T[n]` of its thread returns null.
class CFailingAllocation {
public:
    CFailingAllocation();
    ~CFailingAllocation();
    CFailingAllocation(CFailingAllocation const&) = delete;
    CFailingAllocation& operator=(CFailingAllocation const&) = delete;
};
