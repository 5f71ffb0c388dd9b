// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

/// While one of these lives, every `new (std::nothrow) T[n]` of its thread returns
/// null, and in the engine's tests every `calloc`.
class CFailingAllocation {
public:
    CFailingAllocation();
    ~CFailingAllocation();
    CFailingAllocation(CFailingAllocation const&) = delete;
    CFailingAllocation& operator=(CFailingAllocation const&) = delete;
};
