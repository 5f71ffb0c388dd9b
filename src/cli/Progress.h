// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

/// One line on standard error that tells how far the work is, when a person reads along there.
/// Thread: main.
class CProgress {
public:
    /// `isWanted`: false keeps the line away on a terminal too.
    explicit CProgress(bool isWanted);
    ~CProgress() { Clear(); }
    CProgress(CProgress const&) = delete;
    CProgress& operator=(CProgress const&) = delete;

    /// Shows that `done` of `total` files are done, `percent` of all the work, and which file is
    /// at hand. Shown ten times a second at the most.
    void Show(std::size_t done, std::size_t total, int percent, std::string_view name);

    /// Takes the line away, so that something else can be written.
    void Clear();

private:
    bool m_bWanted;
    bool m_bShown = false;
    std::chrono::steady_clock::time_point m_lastShown;
};
