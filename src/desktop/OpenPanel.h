// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QFileDialog>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

class QLabel;

/// What the open panel asks about each entry.
struct COpenPanelRules {
    std::function<bool(std::string const& path)> m_shouldShow; ///< Is it listed at all?
    std::function<bool(std::string const& path)> m_canChoose;  ///< May it be chosen?
    bool m_bEveryKind = false;                                 ///< May every kind of music be?
};

/// One panel for files and folders, several at once. Entries that may not be chosen are greyed; one
/// that is typed all the same is told, and the panel stays. A double click on a folder, or its
/// typed name, enters it; the button takes what is selected, folders included, and a button of its
/// own takes the folder that one is in. Nothing can be deleted, renamed or made in it, and it
/// leaves no settings behind. Thread: main.
class COpenPanel : public QFileDialog {
    Q_OBJECT

public:
    explicit COpenPanel(COpenPanelRules rules, QWidget* parent = nullptr);

    /// What was chosen, in the order of the selection or as it was typed; empty unless the panel
    /// was accepted.
    [[nodiscard]] std::vector<std::string> const& chosenPaths() const { return m_vChosen; }

    void accept() override;

private:
    void setUpPlaces();
    void setUpColumns();
    void setUpOwnParts();
    void takeThisFolder();
    [[nodiscard]] QStringList typedNames() const;
    bool takeTyped(QStringList const& names);
    void tell(QString const& sentence);

    COpenPanelRules m_rules;
    QLabel* m_pNotice = nullptr;
    std::vector<std::string> m_vChosen;
};
