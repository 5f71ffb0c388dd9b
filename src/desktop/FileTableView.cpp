// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/FileTableView.h"

#include "desktop/CellDelegate.h"
#include "desktop/FileTableModel.h"

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>
#include <QVBoxLayout>
#include <algorithm>

namespace {

constexpr int kArtistColumnChars = 26;  // Fixed: first width, in average letters.
constexpr int kSmallestColumnChars = 6; // Fixed: a column can't be made narrower.
constexpr int kRowPadding = 8;          // Fixed: pixels added to a line's height.
constexpr qreal kHintFontScale = 1.4;   // Fixed: size of the hint's first line.
constexpr int kDropFrameWidth = 2;      // Fixed: pixels.

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
    setItemDelegateForColumn(CFileTableModel::kTempoColumn, new CTempoDelegate(this));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setHeights();
    setUpHeader();
    setUpHint();
    connect(&model, &QAbstractItemModel::rowsInserted, this, &CFileTableView::onRowsChanged);
}

void CFileTableView::setUpHeader() {
    QHeaderView* header = horizontalHeader();
    int const letter = fontMetrics().averageCharWidth();
    auto* headerStyle = new CHeaderStyle;
    headerStyle->setParent(this);
    header->setStyle(headerStyle);
    header->setHighlightSections(false);
    header->setSectionsMovable(false);
    header->setMinimumSectionSize(letter * kSmallestColumnChars);
    header->setSortIndicatorClearable(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->resizeSection(CFileTableModel::kArtistColumn, letter * kArtistColumnChars);
    int const icon = style()->pixelMetric(QStyle::PM_SmallIconSize);
    header->resizeSection(CFileTableModel::kTempoColumn,
                          fontMetrics().horizontalAdvance("000.00") + icon + 5 * kCellMargin);
    setSortingEnabled(true);
    connect(header, &QHeaderView::sectionResized, this, &CFileTableView::onSectionResized);
}

void CFileTableView::setHeights() {
    int const height = fontMetrics().height() + kRowPadding;
    verticalHeader()->setDefaultSectionSize(height);
    horizontalHeader()->setFixedHeight(height);
}

void CFileTableView::setUpHint() {
    m_pHint = new QWidget(viewport());
    m_pHint->setAttribute(Qt::WA_TransparentForMouseEvents);
    QString const keys = QKeySequence(QKeySequence::Open).toString(QKeySequence::NativeText);
    m_pHintTitle = new QLabel(tr("Drop music files or folders here"), m_pHint);
    m_pHintTitle->setObjectName("emptyHint");
    auto* way = new QLabel(tr("or press %1 to choose them").arg(keys), m_pHint);
    auto* layout = new QVBoxLayout(m_pHint);
    for (QLabel* label : {m_pHintTitle, way}) {
        label->setAlignment(Qt::AlignCenter);
        label->setForegroundRole(QPalette::PlaceholderText);
        layout->addWidget(label);
    }
    layout->insertStretch(0);
    layout->addStretch();
    QFont font = m_pHintTitle->font();
    font.setPointSizeF(font.pointSizeF() * kHintFontScale);
    m_pHintTitle->setFont(font);
    onRowsChanged();
}

void CFileTableView::placeHint() {
    m_pHint->setGeometry(viewport()->rect());
}

// A table with rows always has a current one: screen readers start from it.
void CFileTableView::onRowsChanged() {
    bool const isEmpty = m_model.rowCount() == 0;
    m_pHint->setVisible(isEmpty);
    setAccessibleDescription(isEmpty ? m_pHintTitle->text() : QString());
    if (!isEmpty && !currentIndex().isValid()) {
        selectionModel()->setCurrentIndex(m_model.index(0, 0), QItemSelectionModel::NoUpdate);
    }
}

void CFileTableView::copySelection() const {
    QModelIndexList rows = selectionModel()->selectedRows();
    if (rows.isEmpty()) {
        return;
    }
    std::sort(rows.begin(), rows.end());
    QString text;
    for (QModelIndex const& row : rows) {
        for (int column = 0; column < CFileTableModel::kColumnCount; ++column) {
            text += AsField(row.siblingAtColumn(column).data().toString());
            text += QLatin1Char(column + 1 < CFileTableModel::kColumnCount ? '\t' : '\n');
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
    placeHint();
    fitTitle();
}

void CFileTableView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        setHeights();
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
    option.rect = visualRect(current.siblingAtColumn(0))
                      .united(visualRect(current.siblingAtColumn(CFileTableModel::kTempoColumn)));
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void CFileTableView::paintDropFrame() {
    QPainter painter(viewport());
    painter.setPen(QPen(palette().color(QPalette::Highlight), kDropFrameWidth));
    int const inset = kDropFrameWidth / 2;
    painter.drawRect(viewport()->rect().adjusted(inset, inset, -inset, -inset));
}

// The columns always fill the table: a column that is dragged takes from, or gives to, the one on
// its right; the last one deals with the title.
void CFileTableView::onSectionResized(int section, int oldWidth, int newWidth) {
    if (m_bFitting) {
        return;
    }
    int const neighbour = section + 1;
    if (neighbour >= CFileTableModel::kColumnCount) {
        fitTitle();
        return;
    }
    m_bFitting = true;
    QHeaderView* header = horizontalHeader();
    int const wanted = header->sectionSize(neighbour) - (newWidth - oldWidth);
    header->resizeSection(neighbour, std::max(header->minimumSectionSize(), wanted));
    m_bFitting = false;
    fitTitle();
}

void CFileTableView::fitTitle() {
    if (m_bFitting) {
        return;
    }
    m_bFitting = true;
    QHeaderView* header = horizontalHeader();
    int const others = header->sectionSize(CFileTableModel::kArtistColumn) +
                       header->sectionSize(CFileTableModel::kTempoColumn);
    header->resizeSection(CFileTableModel::kTitleColumn,
                          std::max(header->minimumSectionSize(), viewport()->width() - others));
    m_bFitting = false;
}
