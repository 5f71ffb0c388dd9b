// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Report.h"
#include "export/SongJson.h"

/// Writes the records that rows carry, one JSON object a line, on their own or as the elements of
/// an array.
class CSongReport final : public IReport {
public:
    /// `output` must outlive it.
    CSongReport(COutput& output, CSongJsonWishes wishes, bool isArray)
        : m_output(output), m_wishes(std::move(wishes)), m_bArray(isArray) {}

    bool Add(CReportRow const& row) override {
        std::string const before = !m_bArray ? "" : m_bBegun ? ",\n" : "[\n";
        m_bBegun = true;
        std::string const json = SongJson(*row.m_pSong, m_wishes);
        return m_output.Write(before + json + (m_bArray ? "" : "\n")) && m_output.Flush();
    }

    bool End() override { return m_output.Write(!m_bArray ? "" : m_bBegun ? "\n]\n" : "[]\n"); }

private:
    COutput& m_output;
    CSongJsonWishes m_wishes;
    bool m_bArray;
    bool m_bBegun = false;
};
