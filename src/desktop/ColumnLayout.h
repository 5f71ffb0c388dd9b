// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <vector>

constexpr int kWholeShare = 1000; // Fixed: shares are kept in thousandths.

/// Which columns a table has, in the order shown, and what its user made of their widths.
/// Thread: main.
struct CColumnLayout {
    struct CPlace {
        int m_nColumn = 0; ///< A number of `CFileTableModel`.
        /// Pixels; of the title, thousandths of the room that it shares with the artist. 0: as wide
        /// as it comes.
        int m_nWidth = 0;

        friend bool operator==(CPlace const&, CPlace const&) = default;
    };

    /// Title, artist and tempo, as wide as they come.
    static CColumnLayout Factory();

    /// One word for each column: "title:500 artist tempo key:80". Columns of other names, and of
    /// those named twice the later ones, are left out, widths that can't be meant count as 0. The
    /// title comes first, artist and tempo come last when they aren't named.
    static CColumnLayout FromText(QString const& text);

    [[nodiscard]] QString Text() const;

    std::vector<CPlace> m_vPlaces;

    friend bool operator==(CColumnLayout const&, CColumnLayout const&) = default;
};
