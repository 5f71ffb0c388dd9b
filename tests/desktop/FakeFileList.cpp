// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "FakeFileList.h"

#include <utility>

std::u16string FakeFileList::objectValueForTableColumn(std::int32_t column, std::size_t row) const {
    ++textReads;
    Row const& entry = rows.at(row);
    switch (column) {
    case 1:
        return entry.artist;
    case 2:
        return entry.tempo;
    default:
        return entry.title;
    }
}

void FakeFileList::append(std::u16string title, std::u16string artist, std::u16string tempo) {
    Row row{std::move(title), std::move(artist), std::move(tempo), {}};
    row.state.m_sPath = u"/music/" + row.title;
    row.state.m_bDone = !row.tempo.empty();
    rows.push_back(std::move(row));
}
