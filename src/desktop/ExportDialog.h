// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/RowExport.h"
#include "desktop/SongExport.h"

#include <QDialog>
#include <QString>
#include <variant>
#include <vector>

class CRecordStore;
class CSongGatherer;
class QComboBox;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QWidget;
struct CGathering;

/// Asks which rows are to be written, as what and where; shows the first lines; writes them: as
/// they are shown, or with all that was heard of their songs, which it has heard where it wasn't
/// and that is wanted. A file that is there already is replaced as a whole or not at all.
/// Thread: main.
class CExportDialog : public QDialog {
    Q_OBJECT

public:
    /// `selected` may be empty: then only all rows can be exported. `store`, where songs are known
    /// from, must outlive it.
    CExportDialog(std::vector<CExportRow> all, std::vector<CExportRow> selected,
                  CRecordStore& store, QWidget* parent = nullptr);

    /// Writes what is chosen to `path`; into the folder `path` when several songs get a file each.
    /// Returns: false when that failed, which the dialog tells.
    bool save(QString const& path);

    /// How many rows were written where, as a sentence; empty before that.
    [[nodiscard]] QString summary() const { return m_sSummary; }

private:
    using Format = std::variant<ERowFormat, ESongFormat>;

    void setUpChoices();
    void addFormat(Format format, QString const& name);
    void setUpGathering();
    void setUpPreview();
    void setUpButtons();
    [[nodiscard]] std::vector<CExportRow> const& rows() const;
    [[nodiscard]] Format format() const;
    void showChoice();
    void showGathering();
    void showSongs();
    void showFirstSongs(ESongFormat format);
    [[nodiscard]] static QString GatheringText(CGathering const& state);
    [[nodiscard]] bool isIntoFolder() const;
    void askAndSave();
    [[nodiscard]] QString askForFile(QString const& folder);
    [[nodiscard]] std::vector<CTakenSong> songs(std::size_t most) const;
    bool saveSongs(QString const& path, ESongFormat format);
    bool saveInto(QString const& folder, std::vector<CTakenSong> const& songs, ESongFormat format);
    bool write(QString const& path, std::string const& text);
    void tellExported(std::size_t songs, QString const& place);
    void tellProblem(QString const& text);

    std::vector<CExportRow> m_vAll;
    std::vector<CExportRow> m_vSelected;
    std::vector<Format> m_vFormats; // of the choices
    CSongGatherer* m_pGatherer;
    QComboBox* m_pWhich = nullptr;
    QComboBox* m_pFormat = nullptr;
    QWidget* m_pGathering = nullptr; // a line with the two below
    QLabel* m_pGathered = nullptr;
    QPushButton* m_pGather = nullptr;
    QPlainTextEdit* m_pPreview = nullptr;
    QLabel* m_pProblem = nullptr;
    QPushButton* m_pSave = nullptr;
    QString m_sSummary;
};
