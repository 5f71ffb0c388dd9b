// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Report.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

/// Rows in aligned columns for a person to read: path, title, artist, tempo, and where the tempo
/// came from, and the next reading of it where that is wanted. On a terminal the texts are cut so
/// that a row keeps to one line; elsewhere nothing is cut. Thread: main.
class CTableReport final : public IReport {
public:
    CTableReport(COutput& output, bool showsOther);

    /// As if the output were a terminal of `width` cells; 0: as if it were none.
    CTableReport(COutput& output, std::size_t width, bool isBold, bool showsOther = false);

    bool Add(CReportRow const& row) override;
    bool End() override;

private:
    static constexpr std::size_t kColumns = 6;
    using CCells = std::array<std::string, kColumns>;
    using CWidths = std::array<std::size_t, kColumns>;

    [[nodiscard]] CWidths MeasureColumns() const;
    [[nodiscard]] std::string MakeLine(CCells const& cells, CWidths const& widths) const;

    COutput& m_output;
    std::size_t m_nWidth;
    bool m_bBold;
    std::size_t m_nColumns;      // the last one only where it is wanted
    std::vector<CCells> m_vRows; // the headings first
};
