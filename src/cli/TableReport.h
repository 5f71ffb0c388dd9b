// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Report.h"

#include <cstddef>
#include <string>
#include <vector>

/// Rows in aligned columns for a person to read: path, title, artist, tempo, and where the tempo
/// came from, and where they are wanted the next reading of it and the key. On a terminal the texts
/// are cut so that a row keeps to one line; elsewhere nothing is cut. Thread: main.
class CTableReport final : public IReport {
public:
    CTableReport(COutput& output, CExtraColumns const& extra);

    /// As if the output were a terminal of `width` cells; 0: as if it were none.
    CTableReport(COutput& output, std::size_t width, bool isBold, CExtraColumns const& extra = {});

    bool Add(CReportRow const& row) override;
    bool End() override;

private:
    using CCells = std::vector<std::string>;
    using CWidths = std::vector<std::size_t>;

    void AddExtra(CCells& cells, std::string other, std::string key) const;
    [[nodiscard]] CWidths MeasureColumns() const;
    [[nodiscard]] std::string MakeLine(CCells const& cells, CWidths const& widths) const;

    COutput& m_output;
    std::size_t m_nWidth;
    bool m_bBold;
    CExtraColumns m_extra;
    std::vector<CCells> m_vRows; // the headings first
};
