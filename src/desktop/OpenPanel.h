// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFileDialog>
#include <functional>
#include <string>
#include <vector>

/// What the open panel asks about each entry.
struct COpenPanelRules {
    std::function<bool(std::string const& path)> m_shouldShow; ///< Is it listed at all?
    std::function<bool(std::string const& path)> m_canChoose;  ///< May it be chosen?
};

/// One panel for files and folders, several at once. Entries that may not be chosen are greyed. A
/// double click on a folder enters it; the button takes what is selected, folders included. Nothing
/// can be deleted, renamed or made in it, and it leaves no settings behind.
/// Thread: main.
class COpenPanel : public QFileDialog {
    Q_OBJECT

public:
    explicit COpenPanel(COpenPanelRules rules, QWidget* parent = nullptr);

    /// What was chosen, in the order of the selection; empty unless the panel was accepted.
    [[nodiscard]] std::vector<std::string> const& chosenPaths() const { return m_vChosen; }

    void accept() override;

private:
    COpenPanelRules m_rules;
    std::vector<std::string> m_vChosen;
};
