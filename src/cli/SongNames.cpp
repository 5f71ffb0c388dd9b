// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/SongNames.h"

namespace {

/// The row of the same file under another name.
CReportRow RowUnder(std::string const& name, CReportRow row) {
    if (row.m_bTitleIsName) {
        row.m_sTitle = name.substr(name.rfind('/') + 1);
    }
    row.m_sPath = name;
    row.m_bFurtherName = true;
    return row;
}

} // namespace

bool CSongNames::Enter(std::string const& key, std::size_t index, std::string const& name,
                       std::optional<CPlacedRow>& answered) {
    auto const [place, isFirst] = m_songs.try_emplace(key);
    CSong& song = place->second;
    if (!isFirst && song.m_row) {
        answered.emplace(index, RowUnder(name, *song.m_row));
    } else if (!isFirst) {
        song.m_vWaiting.emplace_back(index, name);
    }
    return isFirst;
}

std::vector<CSongNames::CPlacedRow> CSongNames::Answer(std::string const& key,
                                                       CReportRow const& row) {
    std::vector<CPlacedRow> rows;
    auto const place = m_songs.find(key);
    if (place == m_songs.end()) {
        return rows;
    }
    for (auto const& [index, name] : std::exchange(place->second.m_vWaiting, {})) {
        rows.emplace_back(index, RowUnder(name, row));
    }
    place->second.m_row = row;
    return rows;
}
