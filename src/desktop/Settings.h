// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Wishes.h"

#include <QSize>
#include <QString>
#include <optional>

/// What a person has changed, in an INI file of that person's. Only what differs from the factory
/// state stands in it, and there is no file before the first change.
/// Thread: main.
class CSettings {
public:
    CSettings() = default;

    /// Settings that are neither read nor kept: everything is as at the first start.
    static CSettings Factory();

    [[nodiscard]] CWishes Wishes() const;
    void SetWishes(CWishes const& wishes);

    /// Whether the pane is to be open, as the user said last; nothing as long as nobody has.
    [[nodiscard]] std::optional<bool> PaneOpen() const;
    void SetPaneOpen(bool isOpen);

    /// Whether the window's size and columns are kept for the next start. Once it is not, what was
    /// kept is forgotten.
    [[nodiscard]] bool RemembersLayout() const;
    void SetRemembersLayout(bool isWanted);

    /// Nothing unless the user has changed it and it is kept.
    [[nodiscard]] std::optional<QSize> WindowSize() const;
    void SetWindowSize(QSize size);

    /// The table's columns, in the words of `CColumnLayout`; empty unless the user has changed them
    /// and they are kept. Setting nothing forgets them.
    [[nodiscard]] QString Columns() const;
    void SetColumns(QString const& columns);

    /// All that is stored, as lines of the file; empty when nothing is.
    [[nodiscard]] QString Stored() const;

    /// Where the file lies, or would.
    [[nodiscard]] static QString FilePath();

    /// Forgets everything, and the file is gone.
    void Clear();

private:
    bool m_bIgnored = false;
};
