// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/TableReport.h"

#include "cli/Message.h"
#include "cli/Text.h"
#include "song/SongCandidates.h"

#include <algorithm>
#include <numeric>
#include <unistd.h>

namespace {

constexpr std::size_t kPathColumn = 0;
constexpr std::size_t kTempoColumn = 3;
constexpr std::size_t kTextColumns = 3;   // path, title and artist are cut when room is short
constexpr std::size_t kGap = 2;           // cells between two columns
constexpr std::size_t kNarrowestText = 6; // cells that a cut column keeps
constexpr char kBold[] = "\x1B[1m";       // Standard: ECMA-48, select graphic rendition.
constexpr char kPlain[] = "\x1B[0m";      // Standard: likewise.

std::string SourceText(CReportRow const& row) {
    if (row.m_source == ETempoSource::None) {
        return "failed";
    }
    if (row.m_source == ETempoSource::Tag) {
        return row.m_tagTempo == ETagTempo::TimesTen       ? "tag, times 10 there"
               : row.m_tagTempo == ETagTempo::TimesHundred ? "tag, times 100 there"
               : row.m_tagTempo == ETagTempo::Unlikely     ? "tag, unlikely"
               : row.m_setBy == ESetBy::Hand               ? "tag, by hand"
                                                           : "tag";
    }
    if (row.m_bNoBeat) {
        return "no beat was found";
    }
    std::string const source = row.m_source == ETempoSource::Length ? "length" : "analysis";
    return source + (row.m_writing == EWriting::Stored   ? ", stored"
                     : row.m_bKept                       ? ", tag kept"
                     : row.m_bRefused || row.m_bTooShort ? ", not stored"
                                                         : "");
}

/// Behind a tempo that no song has.
char const* MarkOf(CReportRow const& row) {
    bool const isUnlikely =
        row.m_source == ETempoSource::Tag && row.m_tagTempo == ETagTempo::Unlikely;
    return isUnlikely ? "?" : "";
}

std::string Spaces(std::size_t count) {
    return std::string(count, ' ');
}

} // namespace

CTableReport::CTableReport(COutput& output, CExtraColumns const& extra)
    : CTableReport(output, output.IsTerminal() ? TerminalWidth(STDOUT_FILENO) : 0,
                   output.IsTerminal() && AreColoursWelcome(), extra) {
}

CTableReport::CTableReport(COutput& output, std::size_t width, bool isBold,
                           CExtraColumns const& extra)
    : m_output(output),
      m_nWidth(width),
      m_bBold(isBold),
      m_extra(extra),
      m_vRows({{"Path", "Title", "Artist", "Tempo", "Source"}}) {
    AddExtra(m_vRows.front(), "Or", "Key");
}

/// Adds the cells of the columns that are wanted.
void CTableReport::AddExtra(CCells& cells, std::string other, std::string key) const {
    if (m_extra.m_bOther) {
        cells.push_back(std::move(other));
    }
    if (m_extra.m_bHarmony) {
        cells.push_back(std::move(key));
    }
}

bool CTableReport::Add(CReportRow const& row) {
    CTempoCandidate const* const other = OtherReading(row.m_candidates);
    CCells cells = {Printable(row.m_sPath), Printable(row.m_sTitle), Printable(row.m_sArtist),
                    FiniteTempoText(row.m_dTempo).value_or("-") + MarkOf(row), SourceText(row)};
    AddExtra(cells, other != nullptr ? ReadingText(*other) : "", KeyInAllWays(row.m_harmony));
    m_vRows.push_back(std::move(cells));
    return true;
}

/// As wide as the widest cell each; then, where room is short, the widest text column gives way
/// cell by cell.
CTableReport::CWidths CTableReport::MeasureColumns() const {
    std::size_t const columns = m_vRows.front().size();
    CWidths widths(columns);
    for (CCells const& row : m_vRows) {
        for (std::size_t i = 0; i < columns; ++i) {
            widths[i] = std::max(widths[i], DisplayWidth(row[i]));
        }
    }
    std::size_t total =
        std::accumulate(widths.begin(), widths.end(), std::size_t{0}) + kGap * (columns - 1);
    while (m_nWidth > 0 && total > m_nWidth) {
        auto const widest = std::max_element(widths.begin(), widths.begin() + kTextColumns);
        if (*widest <= kNarrowestText) {
            break;
        }
        --*widest;
        --total;
    }
    return widths;
}

std::string CTableReport::MakeLine(CCells const& cells, CWidths const& widths) const {
    std::string line;
    std::size_t owed = 0; // blanks that are written only when something follows
    for (std::size_t i = 0; i < cells.size(); ++i) {
        // The end of a path tells more than its beginning.
        std::string const text = i == kPathColumn ? CutStartToWidth(cells[i], widths[i])
                                                  : CutToWidth(cells[i], widths[i]);
        std::size_t const room = widths[i] - std::min(widths[i], DisplayWidth(text));
        bool const isRight = i == kTempoColumn;
        line += text.empty() ? "" : Spaces(owed + (isRight ? room : 0)) + text;
        owed = (text.empty() ? owed + widths[i] : isRight ? 0 : room) + kGap;
    }
    return line;
}

bool CTableReport::End() {
    if (m_vRows.size() == 1) {
        return true; // headings over nothing
    }
    CWidths const widths = MeasureColumns();
    bool isFirst = m_bBold;
    for (CCells const& row : m_vRows) {
        std::string const line = MakeLine(row, widths);
        if (!m_output.Write(isFirst ? kBold + line + kPlain + "\n" : line + "\n")) {
            return false;
        }
        isFirst = false;
    }
    return m_output.Write("");
}
