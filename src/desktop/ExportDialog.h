// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/RowExport.h"

#include <QByteArray>
#include <QDialog>
#include <QString>
#include <vector>

class QComboBox;
class QLabel;
class QPlainTextEdit;

/// Asks which rows are to be written, as what and where; shows the first lines; writes them. A file
/// that is there already is replaced as a whole or not at all.
/// Thread: main.
class CExportDialog : public QDialog {
    Q_OBJECT

public:
    /// `selected` may be empty: then only all rows can be exported.
    CExportDialog(std::vector<CExportRow> all, std::vector<CExportRow> selected,
                  QWidget* parent = nullptr);

    /// Writes what is chosen to `path`. Returns: false when that failed, which the dialog tells.
    bool save(QString const& path);

    /// How many rows were written where, as a sentence; empty before that.
    [[nodiscard]] QString summary() const { return m_sSummary; }

private:
    void setUpChoices();
    void setUpPreview();
    void setUpButtons();
    [[nodiscard]] std::vector<CExportRow> const& rows() const;
    [[nodiscard]] ERowFormat format() const;
    void showPreview();
    void askAndSave();

    std::vector<CExportRow> m_vAll;
    std::vector<CExportRow> m_vSelected;
    QComboBox* m_pWhich = nullptr;
    QComboBox* m_pFormat = nullptr;
    QPlainTextEdit* m_pPreview = nullptr;
    QLabel* m_pProblem = nullptr;
    QString m_sSummary;
};
