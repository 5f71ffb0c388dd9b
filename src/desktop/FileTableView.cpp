// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/FileTableView.h"

#include "desktop/CellDelegate.h"
#include "desktop/EmptyHint.h"
#include "desktop/FileTableModel.h"
#include "desktop/Tints.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QHeaderView>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace {

constexpr int kRowPadding = 8;     // Fixed: pixels added to a line's height.
constexpr int kStripeStepMs = 50;  // Fixed: from one place of the stripe to the next.
constexpr int kDropFrameWidth = 2; // Fixed: pixels.

/// A cell as one field of tab-separated text.
QString AsField(QString text) {
    return text.replace(QLatin1Char('\t'), QLatin1Char(' '))
        .replace(QLatin1Char('\r'), QLatin1Char(' '))
        .replace(QLatin1Char('\n'), QLatin1Char(' '))
        .trimmed();
}

} // namespace

CFileTableView::CFileTableView(CFileTableModel& model, QWidget* parent)
    : QTableView(parent), m_model(model) {
    setModel(&model);
    setItemDelegate(new CCellDelegate(this));
    auto* const tempos = new CTempoDelegate(this);
    setItemDelegateForColumn(CFileTableModel::kTempoColumn, tempos);
    connect(tempos, &CTempoDelegate::tempoTyped, this,
            [this](QModelIndex const& index, double bpm) {
                emit tempoTyped(m_model.idAt(index.row()), bpm);
            });
    connect(this, &QAbstractItemView::doubleClicked, this, [this](QModelIndex const& index) {
        if (index.column() == CFileTableModel::kTempoColumn) {
            editTempo();
        }
    });
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setHeights();
    setUpHeader();
    m_pHint = new CEmptyHint(viewport());
    connect(m_pHint, &CEmptyHint::addRequested, this, &CFileTableView::addRequested);
    connect(m_pHint, &CEmptyHint::onlyLookRequested, this, &CFileTableView::onlyLookRequested);
    setColors();
    m_stripeTimer.setInterval(kStripeStepMs);
    connect(&m_stripeTimer, &QTimer::timeout, this, &CFileTableView::moveStripes);
    connect(&model, &QAbstractItemModel::rowsInserted, this, &CFileTableView::onRowsChanged);
    connect(&model, &QAbstractItemModel::rowsRemoved, this, &CFileTableView::onRowsChanged);
    connect(&model, &QAbstractItemModel::modelAboutToBeReset, this, &CFileTableView::keepPlaces);
    connect(&model, &QAbstractItemModel::modelReset, this, &CFileTableView::restorePlaces);
    onRowsChanged();
}

void CFileTableView::setHeights() {
    int const height = fontMetrics().height() + kRowPadding;
    verticalHeader()->setDefaultSectionSize(height);
    horizontalHeader()->setFixedHeight(height);
}

void CFileTableView::setColors() {
    setAlternatingRowColors(CanStripeRows(palette()));
    m_pHint->setColors(palette());
}

// A table with rows always has a current one: screen readers start from it.
void CFileTableView::onRowsChanged() {
    bool const isEmpty = m_model.rowCount() == 0;
    m_pHint->setVisible(isEmpty);
    m_pHint->setFiltered(m_model.counts().m_nAll > 0);
    setAccessibleDescription(isEmpty ? m_pHint->text() : QString());
    if (!isEmpty && !currentIndex().isValid()) {
        selectionModel()->setCurrentIndex(m_model.index(0, 0), QItemSelectionModel::NoUpdate);
    }
}

std::vector<std::size_t> CFileTableView::selectedIds() const {
    QModelIndexList rows = selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    std::vector<std::size_t> ids;
    for (QModelIndex const& row : rows) {
        ids.push_back(m_model.idAt(row.row()));
    }
    return ids;
}

void CFileTableView::editTempo() {
    QModelIndex const cell = currentIndex().siblingAtColumn(CFileTableModel::kTempoColumn);
    if (cell.flags().testFlag(Qt::ItemIsEditable)) {
        scrollTo(cell);
        edit(cell);
    }
}

void CFileTableView::keepPlaces() {
    m_bRestoring = true;
    m_vSelectedIds = selectedIds();
    m_nFirstSelectedRow = m_vSelectedIds.empty() ? -1 : m_model.rowOf(m_vSelectedIds.front());
    m_nCurrentRow = currentIndex().row();
    m_nCurrentId = m_nCurrentRow >= 0 ? m_model.idAt(m_nCurrentRow) : 0;
}

// Rows that are still shown stay selected. Where the current one has gone, its neighbour follows,
// and is selected when nothing else is any more.
void CFileTableView::restorePlaces() {
    QItemSelection selection;
    std::vector<int> rows;
    for (std::size_t const id : m_vSelectedIds) {
        rows.push_back(m_model.rowOf(id));
    }
    std::sort(rows.begin(), rows.end());
    int const lastColumn = m_model.columnCount() - 1;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1) {
            ++end;
        }
        if (rows[end - 1] >= 0) {
            selection.select(m_model.index(std::max(rows[i], 0), 0),
                             m_model.index(rows[end - 1], lastColumn));
        }
        i = end;
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (m_nCurrentRow >= 0 && m_model.rowCount() > 0) {
        int const same = m_model.rowOf(m_nCurrentId);
        bool const follows = same < 0 && selection.isEmpty() && m_nFirstSelectedRow >= 0;
        int const place = follows ? m_nFirstSelectedRow : m_nCurrentRow;
        int const row = same >= 0 ? same : std::min(place, m_model.rowCount() - 1);
        selectionModel()->setCurrentIndex(
            m_model.index(row, 0), follows ? QItemSelectionModel::Select | QItemSelectionModel::Rows
                                           : QItemSelectionModel::NoUpdate);
        scrollTo(currentIndex());
    }
    onRowsChanged();
    m_bRestoring = false;
}

// Whole rows are what one moves between: the first and the last one, not the first and last cell.
QModelIndex CFileTableView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    if (m_model.rowCount() > 0 && (action == MoveHome || action == MoveEnd)) {
        int const row = action == MoveHome ? 0 : m_model.rowCount() - 1;
        return m_model.index(row, std::max(currentIndex().column(), 0));
    }
    return QTableView::moveCursor(action, modifiers);
}

void CFileTableView::sortByNext(int column) {
    QHeaderView* header = horizontalHeader();
    int const section = m_model.sectionOf(column);
    if (section < 0) {
        return;
    }
    bool const isSorted = header->sortIndicatorSection() == section;
    if (isSorted && header->sortIndicatorOrder() == Qt::DescendingOrder) {
        header->setSortIndicator(-1, Qt::AscendingOrder);
    } else {
        header->setSortIndicator(section, isSorted ? Qt::DescendingOrder : Qt::AscendingOrder);
    }
}

void CFileTableView::setWishes(CWishes const& wishes) {
    m_pHint->setWishes(wishes);
    onRowsChanged();
}

// Where the desktop wants nothing to move, the stripe stands still.
void CFileTableView::setReading(bool isReading) {
    bool const moves = style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) > 0;
    if (!isReading || !moves) {
        m_stripeTimer.stop();
    } else if (!m_stripeTimer.isActive()) {
        m_stripeTimer.start();
    }
}

void CFileTableView::moveStripes() {
    int const last = rowAt(viewport()->height() - 1);
    for (int row = std::max(rowAt(0), 0); row <= (last < 0 ? m_model.rowCount() - 1 : last);
         ++row) {
        QModelIndex const cell = m_model.index(row, CFileTableModel::kTempoColumn);
        if (cell.data(CFileTableModel::kReadingRole).toBool()) {
            update(cell);
        }
    }
}

void CFileTableView::copySelection() const {
    QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        return;
    }
    std::sort(rows.begin(), rows.end());
    QHeaderView const* header = horizontalHeader();
    QString text;
    for (QModelIndex const& row : rows) {
        for (int place = 0; place < header->count(); ++place) {
            text += AsField(row.siblingAtColumn(header->logicalIndex(place)).data().toString());
            text += QLatin1Char(place + 1 < header->count() ? '\t' : '\n');
        }
    }
    QApplication::clipboard()->setText(text);
}

void CFileTableView::setDropTarget(bool isTarget) {
    if (m_bDropTarget != isTarget) {
        m_bDropTarget = isTarget;
        viewport()->update();
    }
}

void CFileTableView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    m_pHint->setGeometry(viewport()->rect());
    fitColumns();
}

void CFileTableView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        setHeights();
    } else if (event->type() == QEvent::PaletteChange && m_pHint != nullptr) {
        setColors();
    }
}

void CFileTableView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    paintFocus();
    if (m_bDropTarget) {
        paintDropFrame();
    }
}

// A selected row shows where one is. Only somebody who moves about with the keyboard can be on
// another one, and gets a frame around that row.
void CFileTableView::paintFocus() {
    QModelIndex const current = currentIndex();
    bool const byKeyboard =
        window()->testAttribute(Qt::WA_KeyboardFocusChange) || selectionModel()->hasSelection();
    if (!hasFocus() || !byKeyboard || !current.isValid() || selectionModel()->isSelected(current)) {
        return;
    }
    QPainter painter(viewport());
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.backgroundColor = palette().color(QPalette::Base);
    QHeaderView const* header = horizontalHeader();
    int const last = header->logicalIndex(header->count() - 1);
    option.rect =
        visualRect(current.siblingAtColumn(0)).united(visualRect(current.siblingAtColumn(last)));
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void CFileTableView::paintDropFrame() {
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), kDropFrameWidth));
    int const inset = kDropFrameWidth / 2;
    painter.drawRect(viewport()->rect().adjusted(inset, inset, -inset, -inset));
}
