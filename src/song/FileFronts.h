// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <vector>

/// The bytes of two files up to where they are the same to their ends.
struct CFileFronts {
    bool m_bIsKnown = false; // otherwise they are too long to be kept, or can't be read
    std::vector<std::uint8_t> m_vOld;
    std::vector<std::uint8_t> m_vNew;
};

/// What has to be exchanged at the front of the file behind `newFile` to get the one behind
/// `oldFile`. Both are open for reading.
CFileFronts FrontsOf(int oldFile, int newFile);
