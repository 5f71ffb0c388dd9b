// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/InputWalk.h"
#include "cli/Report.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

/// A file of the run and its place among the rows.
struct CPlacedFile {
    std::size_t m_nIndex = 0;
    CInputFile m_input;
};

/// A row and the place at which it stands.
using CPlacedRow = std::pair<std::size_t, CReportRow>;

/// One file under all its names: the first one that was met is worked on.
struct CSong {
    std::string m_sPath;             // the first name
    std::optional<CReportRow> m_row; // nothing while it is worked on
    bool m_bForgotten = false;       // its row was too large to be kept
    std::vector<CPlacedFile> m_vWaiting;
};

/// Keeps the work on one file to once, however many names of it are met: the first name does it,
/// the others get its row. A name that has become another file meanwhile, as when a new version
/// took the place of the first name alone, is worked on itself. Rows with whole records aren't kept
/// for names that are met later: they are worked on too.
/// Thread: one thread at a time.
class CSongNames {
public:
    /// `sortsByKind`: names through which a tempo may be stored and others are worked on apart.
    explicit CSongNames(bool sortsByKind) : m_bSortsByKind(sortsByKind) {}

    /// Enters a name. Returns: the file to be worked on, which ends with `Answer`. Nothing when
    /// another name of it is worked on; the row comes from its `Answer`, or is in `answered` now.
    std::shared_ptr<CSong> Enter(CPlacedFile const& file, std::optional<CPlacedRow>& answered);

    /// Keeps the row of the first name.
    /// Returns: the rows of the other names so far. Those that are another file by now are put
    /// into `released`: they are to be entered again.
    static std::vector<CPlacedRow> Answer(CSong& song, CReportRow const& row,
                                          std::vector<CPlacedFile>& released);

private:
    [[nodiscard]] std::vector<std::string> KeysOf(CInputFile const& input) const;

    bool m_bSortsByKind;
    std::unordered_map<std::string, std::shared_ptr<CSong>> m_songs; // by path and by inode
};
