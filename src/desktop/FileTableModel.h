// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BpmView.h"
#include "desktop/MoreColumns.h"
#include "desktop/RowFilter.h"
#include "desktop/RowQuery.h"

#include <QAbstractTableModel>
#include <QCollator>
#include <QIcon>
#include <cstddef>
#include <optional>
#include <vector>

/// The file list as a sortable table of title, artist and tempo, and of more columns when they are
/// wanted: all of its rows or those that a filter lets through. Texts stay with the list; the model
/// keeps only the order in which rows are shown, and a few marks of each. Row numbers of the list
/// ("ids") are identities: sorting and filtering change places, never ids. What is shown is also
/// what is sorted, copied and spoken. Columns have numbers of their own as well: `EColumn`, then
/// `EMoreColumn`. Where the three stand, both are the same. Thread: main.
class CFileTableModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum EColumn { kTitleColumn, kArtistColumn, kTempoColumn, kColumnCount }; ///< Always there.
    enum ERole {
        kPercentRole = Qt::UserRole, ///< int, 0 to 100, while the row is analysed; else invalid.
        kPathRole,                   ///< Full path, readable form.
        kReadingRole,                ///< bool: it runs, but has no percentage yet.
        kUntitledRole,               ///< bool: the file's name stands where the title should.
        kAwaitsRole,                 ///< bool: the tempo shown awaits another analysis.
        kMarksRole,                  ///< int, bits of `EMark`.
        kPlaceRole,                  ///< bool: a path, whose end tells more than its begin.
        kProblemRole,                ///< What went wrong with the row, as a sentence, or empty.
    };

    enum EMark { kByHand = 1, kNotInFile = 2 };

    explicit CFileTableModel(IFileList const& list, QObject* parent = nullptr);

    int rowCount(QModelIndex const& parent = {}) const override;
    int columnCount(QModelIndex const& parent = {}) const override;
    QVariant data(QModelIndex const& index, int role) const override;
    Qt::ItemFlags flags(QModelIndex const& index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Sorts the shown order by what stands at `section`; -1 restores the order of the list. Rows
    /// without a tempo come last whichever way the tempo is sorted, and so do those that have
    /// nothing in one of the further columns; ties keep the order of the list.
    void sort(int section, Qt::SortOrder order) override;

    /// Adds `column`, which isn't there, behind the others.
    void addColumn(EMoreColumn column);

    /// Takes `column` away, if it is there.
    void removeColumn(EMoreColumn column);

    /// Which column stands at `section`; -1 for none.
    [[nodiscard]] int columnAt(int section) const;

    /// Where `column` stands; -1 when it isn't there.
    [[nodiscard]] int sectionOf(int column) const;

    /// Shows rows that the list has gained, `limit` at the most.
    /// Returns: true when rows are left for a further call.
    bool takeAddedRows(std::size_t limit);

    /// Shows the rows that `filter` lets through. The table is told that the model was reset.
    void setFilter(ERowFilter filter);

    /// Of these, shows the rows that `text`, which is a query, finds.
    void setQuery(QString const& text);

    [[nodiscard]] CRowCounts const& counts() const { return m_counts; }

    /// Tells the table that the tempo cell of row `id` has changed; the row may come or go.
    void reloadRow(std::size_t id);

    /// Tells the table that every row may have changed.
    void reloadAll();

    /// The list's row number shown in table row `row`.
    [[nodiscard]] std::size_t idAt(int row) const;

    /// The table row that shows `id`; -1 when none does.
    [[nodiscard]] int rowOf(std::size_t id) const;

signals:
    void countsChanged();

private:
    /// What the filters go by, kept for every row that was taken.
    struct CMarks {
        bool m_bToDo = false;
        bool m_bToReview = false;
        bool m_bByHand = false;
        bool m_bNotInFile = false;
        bool m_bProblem = false;
        bool m_bHidden = false; // No filter lets it through, and none counts it.

        friend bool operator==(CMarks const&, CMarks const&) = default;
    };

    /// What a row is sorted by: a text, or a number.
    struct CSortKey {
        std::optional<QCollatorSortKey> m_text;
        double m_fNumber = 0.0;
        bool m_bMissing = false; // The row comes last.
    };
    using Ids = std::vector<std::size_t>;

    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1); // Fixed: no such row.

    [[nodiscard]] QString textOf(std::size_t id, int column) const;
    [[nodiscard]] QString tempoTextOf(std::size_t id, std::u16string const& tempo) const;
    [[nodiscard]] bool isUntitled(std::size_t id) const;
    [[nodiscard]] bool awaitsAnalysis(std::size_t id) const;
    [[nodiscard]] int marksRoleOf(std::size_t id) const;
    [[nodiscard]] QString descriptionOf(std::size_t id, int column) const;
    [[nodiscard]] QString tipOf(std::size_t id) const;
    [[nodiscard]] CSortKey makeKey(std::size_t id) const;
    [[nodiscard]] static int compare(CSortKey const& left, CSortKey const& right);
    [[nodiscard]] bool takeKey(std::size_t id);
    [[nodiscard]] bool comesBefore(std::size_t left, std::size_t right) const;
    [[nodiscard]] CMarks marksOf(std::size_t id) const;
    [[nodiscard]] bool isWanted(std::size_t id) const;
    [[nodiscard]] bool isFound(std::size_t id) const;
    [[nodiscard]] QString searchTextOf(std::size_t id) const;
    void refreshSearchText(std::size_t id);
    void count(CMarks const& marks, bool comes);
    bool refreshMarks(std::size_t id);
    void showOrHide(std::size_t id);
    void numberPlaces(std::size_t first);
    void fillOrder();
    void addKeys();
    void refreshKey(std::size_t id);
    void rearrange(std::size_t sortedCount);

    IFileList const& m_list;
    QCollator m_collator;
    QIcon m_warning;
    Ids m_vOrder;                 // Table row to id.
    Ids m_vPlaces;                // Id to table row, or kNowhere.
    std::vector<CMarks> m_vMarks; // By id.
    CRowCounts m_counts;
    ERowFilter m_filter = ERowFilter::All;
    CRowQuery m_query;
    std::vector<QString> m_vSearchTexts; // By id; filled from the first query on.
    bool m_bSearched = false;            // There was a query.
    std::vector<CSortKey> m_vKeys;       // By id; filled while a column is sorted.
    std::vector<EMoreColumn> m_vMore;    // Behind the three.
    int m_nSortColumn = -1;              // Its number, not its place.
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
