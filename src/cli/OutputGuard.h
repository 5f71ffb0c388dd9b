// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/FolderWalk.h"

#include <string>
#include <string_view>
#include <vector>

/// Keeps results from replacing a file that somebody may want to keep.
/// Thread: main.
class COutputGuard {
public:
    /// `inputs` are the paths whose files are to be analysed; `isOverwriting`: any file may be
    /// replaced but one of these.
    COutputGuard(std::vector<std::string> inputs, CWalkOptions const& options, bool isOverwriting);

    /// Why the open file `file`, called `path`, must not be replaced, for a person; empty when it
    /// may be. `file` is readable, or holds nothing.
    [[nodiscard]] std::string Problem(std::string const& path, int file) const;

private:
    [[nodiscard]] bool IsInput(std::string const& path, int file, bool isOurs) const;

    std::vector<std::string> m_vInputs;
    CWalkOptions m_options;
    bool m_bOverwriting;
};

/// True when `text` begins as a table, CSV or JSON of `tactus analyze` does, or is empty.
bool IsReportText(std::string_view text);

/// True when `text` begins as what `tactus export` and `tactus dupes` write, labels excepted, which
/// say nothing of where they come from.
bool IsExportText(std::string_view text);
