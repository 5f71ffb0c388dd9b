// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Report.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <optional>

/// Takes the next row. Returns: false when there is no use for more.
using RowSink = std::function<bool(CReportRow const& row)>;

/// Brings rows that come in any order into that of their files.
/// Thread: one thread at a time.
class CRowQueue {
public:
    /// Keeps the row of file `index`, which has not been handed on.
    void Put(std::size_t index, CReportRow row);

    /// Hands on every row whose turn it is; `skipsGaps`: also those behind a row that isn't there.
    /// Returns: false once the sink has no use for more; the rest is gone then.
    bool HandOn(RowSink const& sink, bool skipsGaps);

private:
    std::deque<std::optional<CReportRow>> m_vRows;
    std::size_t m_nFirst = 0; // the file whose row is the first of `m_vRows`
};
