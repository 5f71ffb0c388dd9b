// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/InputWalk.h"

#include <string>
#include <vector>

/// The files that `paths` name, in their order, whatever lies there: a folder is an entry like a
/// file. "-" is what standard input delivers. A path that occurs twice counts once.
class CInputList {
public:
    explicit CInputList(std::vector<std::string> const& paths);

    [[nodiscard]] std::vector<CInputFile> const& Files() const { return m_vFiles; }

private:
    CInputWalk m_walk; // keeps what standard input delivered
    std::vector<CInputFile> m_vFiles;
};
