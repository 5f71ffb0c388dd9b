// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ColumnLayout.h"

#include "desktop/FileTableModel.h"

#include <QStringList>
#include <algorithm>
#include <array>

namespace {

constexpr int kWidest = 4000;  // Fixed: pixels; no column is meant to be wider.
constexpr int kLeastShare = 1; // Fixed: thousandths.

// Fixed: names of the columns by their numbers, in the settings.
constexpr std::array<char const*, kAllColumns> kColumnNames{
    "title", "artist", "tempo", "or", "key", "length", "state", "kind", "folder", "stored"};

/// What can be meant by `width`; 0 otherwise.
int MeantWidth(int column, int width) {
    bool const isTitle = column == CFileTableModel::kTitleColumn;
    bool const isMeant =
        isTitle ? width >= kLeastShare && width < kWholeShare : width > 0 && width <= kWidest;
    return isMeant ? width : 0;
}

bool Has(CColumnLayout const& layout, int column) {
    return std::any_of(layout.m_vPlaces.begin(), layout.m_vPlaces.end(),
                       [column](auto const& place) { return place.m_nColumn == column; });
}

} // namespace

CColumnLayout CColumnLayout::Factory() {
    return FromText({});
}

CColumnLayout CColumnLayout::FromText(QString const& text) {
    CColumnLayout layout;
    for (QString const& word : text.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        QStringList const parts = word.split(QLatin1Char(':'));
        auto const name =
            std::find_if(kColumnNames.begin(), kColumnNames.end(), [&parts](char const* known) {
                return parts.front() == QLatin1String(known);
            });
        auto const column = static_cast<int>(name - kColumnNames.begin());
        if (name != kColumnNames.end() && !Has(layout, column)) {
            int const width = parts.size() == 2 ? parts.back().toInt() : 0;
            layout.m_vPlaces.push_back({column, MeantWidth(column, width)});
        }
    }
    for (int column = 0; column < CFileTableModel::kColumnCount; ++column) {
        if (!Has(layout, column)) {
            layout.m_vPlaces.push_back({column, 0});
        }
    }
    std::stable_partition(layout.m_vPlaces.begin(), layout.m_vPlaces.end(), [](auto const& place) {
        return place.m_nColumn == CFileTableModel::kTitleColumn;
    });
    return layout;
}

QString CColumnLayout::Text() const {
    QStringList words;
    for (CPlace const& place : m_vPlaces) {
        QString const name = QLatin1String(kColumnNames[static_cast<std::size_t>(place.m_nColumn)]);
        words << (place.m_nWidth > 0 ? QString("%1:%2").arg(name).arg(place.m_nWidth) : name);
    }
    return words.join(QLatin1Char(' '));
}
