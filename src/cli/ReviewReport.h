// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Report.h"

#include <memory>
#include <vector>

/// Hands on only rows whose tempo a person should look at, likely mistakes first: those whose next
/// reading is at least half as likely as the reported one. Equals stay in their order.
class CReviewReport final : public IReport {
public:
    explicit CReviewReport(std::unique_ptr<IReport> report) : m_pReport(std::move(report)) {}

    bool Add(CReportRow const& row) override;
    bool End() override;

private:
    /// A row, and how much likelier its next reading is than the reported one.
    struct CDoubtfulRow {
        float m_fDoubt = 0.0f;
        CReportRow m_row;
    };

    std::unique_ptr<IReport> m_pReport;
    std::vector<CDoubtfulRow> m_vRows;
};
