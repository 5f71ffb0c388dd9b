// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"

#include <string>
#include <vector>

constexpr std::size_t kAllRows = 1'000'000; ///< More than any test has.

/// A file list of rows written by hand.
class FakeFileList : public IFileList {
public:
    struct Row {
        std::u16string title;
        std::u16string artist;
        std::u16string tempo;
        CRowState state;
        std::vector<CTempoCandidate> candidates = {};
    };

    std::size_t numberOfRowsInTableView() const override { return rows.size(); }
    std::u16string objectValueForTableColumn(std::int32_t column, std::size_t row) const override;
    CRowState rowState(std::size_t row) const override { return rows.at(row).state; }
    std::vector<CTempoCandidate> rowCandidates(std::size_t row) const override {
        return rows.at(row).candidates;
    }
    CBatchStatus status() const override { return batch; }

    /// Appends a row with these texts.
    void append(std::u16string title, std::u16string artist, std::u16string tempo);

    std::vector<Row> rows;
    CBatchStatus batch;
    mutable std::size_t textReads = 0; ///< Calls of `objectValueForTableColumn` so far.
};
