// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

/// What the tag code's calls of the system do while one of these lives, in the tests of `IDTag`
/// alone. A function that isn't set changes nothing; one that answers an error number makes the
/// call fail with it, and one that answers 0 lets it through. One at a time, in programs of one
/// thread.
struct CSystemCalls {
    CSystemCalls();
    ~CSystemCalls();
    CSystemCalls(CSystemCalls const&) = delete;
    CSystemCalls& operator=(CSystemCalls const&) = delete;

    std::function<int(int file)> m_flock;
    std::function<int(int flags)> m_open;
    std::function<int()> m_fsync;
    std::function<int()> m_rename;
    std::function<int()> m_unlink;
};
