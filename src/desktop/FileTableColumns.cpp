// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The table's head: which columns there are, in which order, and how they share the width.

#include "desktop/CellDelegate.h"
#include "desktop/FileTableModel.h"
#include "desktop/FileTableView.h"

#include <QApplication>
#include <QHeaderView>
#include <QMenu>
#include <QProxyStyle>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyleOption>
#include <algorithm>

namespace {

constexpr int kSmallestColumnChars = 6; // Fixed: a column can't be made narrower.
constexpr int kLegibleChars = 12;       // Fixed: others don't take more from title and artist.
constexpr double kTitleShare = 0.6;     // Fixed: title and artist are 3 to 2 at first.

/// The desktop's own style, but header texts stand above the texts of their cells.
class CHeaderStyle : public QProxyStyle {
public:
    CHeaderStyle() : QProxyStyle(QApplication::style()->name()) {}

    void drawControl(ControlElement element, QStyleOption const* option, QPainter* painter,
                     QWidget const* widget) const override {
        auto const* header = qstyleoption_cast<QStyleOptionHeader const*>(option);
        if (element != CE_HeaderLabel || header == nullptr) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QStyleOptionHeader label = *header;
        int const more = kCellMargin - 1 - pixelMetric(PM_HeaderMargin, option, widget) / 2;
        bool const hasArrow = label.sortIndicator != QStyleOptionHeader::None;
        label.rect.adjust(more, 0, hasArrow ? 0 : -more, 0);
        QProxyStyle::drawControl(element, &label, painter, widget);
    }
};

} // namespace

void CFileTableView::setUpHeader() {
    m_fTitleShare = kTitleShare;
    QHeaderView* header = horizontalHeader();
    auto* headerStyle = new CHeaderStyle;
    headerStyle->setParent(this);
    header->setStyle(headerStyle);
    header->setHighlightSections(false);
    header->setSectionsMovable(true);
    header->setFirstSectionMovable(false);
    header->setMinimumSectionSize(fontMetrics().averageCharWidth() * kSmallestColumnChars);
    header->setSortIndicatorClearable(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->resizeSection(CFileTableModel::kTempoColumn, firstWidth(CFileTableModel::kTempoColumn));
    setSortingEnabled(true);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QHeaderView::sectionResized, this, &CFileTableView::onSectionResized);
}

int CFileTableView::firstWidth(int column) const {
    int const icon = style()->pixelMetric(QStyle::PM_SmallIconSize);
    int const number = CTempoDelegate::WidestNumber(font());
    if (column == CFileTableModel::kTempoColumn) {
        return number + icon + 5 * kCellMargin;
    }
    int const head = horizontalHeader()->sectionSizeHint(m_model.sectionOf(column)) + kCellMargin;
    int const letters = UsualLetters(static_cast<EMoreColumn>(column));
    return std::max(head, fontMetrics().averageCharWidth() * letters + 2 * kCellMargin);
}

bool CFileTableView::hasColumn(int column) const {
    return m_model.sectionOf(column) >= 0;
}

// Columns that come or go leave selection and place as they are, so nobody is told of the moment
// between.
void CFileTableView::showColumn(EMoreColumn column, bool isWanted) {
    if (hasColumn(column) == isWanted) {
        return;
    }
    int const scrolled = verticalScrollBar()->value();
    keepPlaces();
    QSignalBlocker const unheard(selectionModel());
    m_bFitting = true;
    if (isWanted) {
        m_model.addColumn(column);
        int const width = m_widths.count(column) > 0 ? m_widths[column] : firstWidth(column);
        horizontalHeader()->resizeSection(m_model.sectionOf(column), width);
    } else {
        removeColumn(column);
    }
    m_bFitting = false;
    restorePlaces();
    fitColumns();
    verticalScrollBar()->setValue(scrolled);
    viewport()->update();
    emit columnsChanged();
}

// The head forgets what it sorts by when that moves.
void CFileTableView::removeColumn(EMoreColumn column) {
    QHeaderView* header = horizontalHeader();
    int const section = header->sortIndicatorSection();
    int const sorted = section < 0 ? -1 : m_model.columnAt(section);
    Qt::SortOrder const order = header->sortIndicatorOrder();
    if (sorted >= CFileTableModel::kColumnCount) {
        header->setSortIndicator(-1, Qt::AscendingOrder);
    }
    m_model.removeColumn(column);
    if (sorted >= CFileTableModel::kColumnCount && sorted != column) {
        header->setSortIndicator(m_model.sectionOf(sorted), order);
    }
}

CColumnLayout CFileTableView::columnLayout() const {
    QHeaderView const* header = horizontalHeader();
    CColumnLayout layout;
    for (int place = 0; place < header->count(); ++place) {
        int const column = m_model.columnAt(header->logicalIndex(place));
        auto const width = m_widths.find(column);
        layout.m_vPlaces.push_back({column, width != m_widths.end() ? width->second : 0});
    }
    return layout;
}

void CFileTableView::setColumnLayout(CColumnLayout const& layout) {
    QHeaderView* header = horizontalHeader();
    m_widths.clear();
    for (int column = kOtherColumn; column < kAllColumns; ++column) {
        showColumn(static_cast<EMoreColumn>(column), false);
    }
    for (CColumnLayout::CPlace const& place : layout.m_vPlaces) {
        if (place.m_nWidth > 0) {
            m_widths[place.m_nColumn] = place.m_nWidth;
        }
        if (place.m_nColumn >= CFileTableModel::kColumnCount) {
            showColumn(static_cast<EMoreColumn>(place.m_nColumn), true);
        }
    }
    int visual = 0;
    for (CColumnLayout::CPlace const& place : layout.m_vPlaces) {
        header->moveSection(header->visualIndex(m_model.sectionOf(place.m_nColumn)), visual++);
    }
    auto const share = m_widths.find(CFileTableModel::kTitleColumn);
    m_fTitleShare = share != m_widths.end() ? share->second / double{kWholeShare} : kTitleShare;
    constexpr int kTempo = CFileTableModel::kTempoColumn;
    auto const tempo = m_widths.find(kTempo);
    m_bFitting = true;
    header->resizeSection(kTempo, tempo != m_widths.end() ? tempo->second : firstWidth(kTempo));
    m_bFitting = false;
    fitColumns();
    emit columnsChanged();
}

void CFileTableView::setHeaderMenu(QMenu& menu) {
    QHeaderView* header = horizontalHeader();
    connect(header, &QWidget::customContextMenuRequested, &menu,
            [header, &menu](QPoint place) { menu.popup(header->mapToGlobal(place)); });
}

// The columns always fill the table: a column that is dragged takes from, or gives to, the one
// behind it. Title and artist keep their shares from then on when the window's width changes.
void CFileTableView::onSectionResized(int section, int oldWidth, int newWidth) {
    if (m_bFitting) {
        return;
    }
    QHeaderView* header = horizontalHeader();
    int const neighbour = header->logicalIndex(header->visualIndex(section) + 1);
    if (neighbour >= 0) {
        m_bFitting = true;
        int const wanted = header->sectionSize(neighbour) - (newWidth - oldWidth);
        header->resizeSection(neighbour, std::max(header->minimumSectionSize(), wanted));
        m_bFitting = false;
    }
    for (int const touched : {section, neighbour}) {
        keepWidth(touched);
    }
    fitColumns();
}

void CFileTableView::keepWidth(int section) {
    int const column = m_model.columnAt(section);
    QHeaderView const* header = horizontalHeader();
    if (column >= CFileTableModel::kTempoColumn) {
        m_widths[column] = header->sectionSize(section);
    } else if (column >= 0) {
        int const title = header->sectionSize(CFileTableModel::kTitleColumn);
        int const artist = header->sectionSize(CFileTableModel::kArtistColumn);
        m_fTitleShare = static_cast<double>(title) / (title + artist);
        m_widths[CFileTableModel::kTitleColumn] = qRound(m_fTitleShare * kWholeShare);
    }
}

void CFileTableView::fitColumns() {
    if (m_bFitting) {
        return;
    }
    m_bFitting = true;
    QHeaderView* header = horizontalHeader();
    int others = 0;
    for (int section = CFileTableModel::kTempoColumn; section < header->count(); ++section) {
        others += header->sectionSize(section);
    }
    int const least = header->minimumSectionSize();
    int const legible = fontMetrics().averageCharWidth() * kLegibleChars;
    int const room = std::max(2 * legible, viewport()->width() - others);
    int const title = std::clamp(qRound(room * m_fTitleShare), least, room - least);
    header->resizeSection(CFileTableModel::kTitleColumn, title);
    header->resizeSection(CFileTableModel::kArtistColumn, room - title);
    m_bFitting = false;
}
