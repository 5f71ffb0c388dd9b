// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/InputWalk.h"
#include "cli/Report.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

/// Keeps the work on one file to once, however many names of it are met: the first name does it,
/// the others get its row.
/// Thread: one thread at a time.
class CSongNames {
public:
    /// A row and the place at which it stands.
    using CPlacedRow = std::pair<std::size_t, CReportRow>;

    /// Enters a name of the file known as `key`, at place `index`.
    /// Returns: true when it is the first, which is to be worked on. Any other gets its row by
    /// `Answer`, or is in `answered` at once.
    bool Enter(std::string const& key, std::size_t index, std::string const& name,
               std::optional<CPlacedRow>& answered);

    /// Keeps the row of the first name.
    /// Returns: the rows of the others that were entered before.
    std::vector<CPlacedRow> Answer(std::string const& key, CReportRow const& row);

private:
    struct CSong {
        std::optional<CReportRow> m_row; // nothing while it is worked on
        std::vector<std::pair<std::size_t, std::string>> m_vWaiting;
    };

    std::unordered_map<std::string, CSong> m_songs;
};
