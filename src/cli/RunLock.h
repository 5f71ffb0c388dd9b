// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/PosixFile.h"

#include <string>

/// What came of asking for the lock.
enum class ERunLock {
    Taken,
    Held, // by another run
    NoFile,
};

/// Keeps two runs of one user from working at the same time. The system lets go of it with the
/// process, however that ends.
/// Thread: main.
class CRunLock {
public:
    /// Asks for the lock, which is that on the empty file "lock" in `folder`; folder and file are
    /// made where they aren't there. Never waits.
    ERunLock Take(std::string const& folder);

    /// Why there is no such file, for a person.
    [[nodiscard]] std::string const& Reason() const { return m_sReason; }

private:
    CDescriptor m_file;
    std::string m_sReason;
};
