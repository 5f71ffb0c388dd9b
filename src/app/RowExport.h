// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/AnalysisProblem.h"

#include <span>
#include <string>

/// What rows are exported as.
enum class ERowFormat {
    Commas, ///< A table by RFC 4180.
    Tabs,   ///< The same with tabs between the fields.
    Json,   ///< JSON, one object a line.
};

/// One row as a person sees it.
struct CExportRow {
    std::string m_sPath;  ///< Bytes.
    std::string m_sTitle; ///< UTF-8, as the next.
    std::string m_sArtist;
    std::string m_sTempo;    ///< Of the list; what is no number above 0 is left out.
    bool m_bFromTag = false; ///< The tempo came with the file, or by hand.
    CAnalysisOutcome m_outcome;
    std::string m_sMessage; ///< What went wrong with the row; or empty.
};

/// The rows in their order: path, title, artist, tempo, where that comes from, and what went wrong.
/// Numbers have two decimals and a point at the most, whatever the locale.
[[nodiscard]] std::string ExportRows(std::span<CExportRow const> rows, ERowFormat format);
