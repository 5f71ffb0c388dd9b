// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ChipsLine.h"

#include "desktop/Numbers.h"
#include "desktop/Texts.h"
#include "desktop/Tints.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QShortcut>
#include <QToolButton>
#include <array>

namespace {

constexpr int kLineMarginX = 6; // Fixed: pixels to the window's edges.
constexpr int kLineMarginY = 2; // Fixed: pixels above and below.
constexpr int kQueryChars = 24; // Fixed: of an average letter; the field's width.
constexpr std::array kChipNames{"chipAll", "chipToDo", "chipToReview", "chipByHand",
                                "chipProblems"}; // In the order of ERowFilter.

} // namespace

CChipsLine::CChipsLine(QWidget* parent) : QWidget(parent), m_pGroup(new QButtonGroup(this)) {
    setObjectName("chipsLine");
    setAccessibleName(tr("Filters"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(kLineMarginX, kLineMarginY, kLineMarginX, kLineMarginY);
    for (std::size_t i = 0; i < kChipNames.size(); ++i) {
        auto* chip = new QToolButton(this);
        auto const key = static_cast<Qt::Key>(Qt::Key_1 + static_cast<int>(i));
        QKeySequence const keys(Qt::ALT | key);
        chip->setObjectName(kChipNames[i]);
        chip->setAutoRaise(true);
        chip->setCheckable(true);
        chip->setFocusPolicy(Qt::NoFocus);
        // On black, a button's own ground doesn't show that it is down. Tab goes to the chosen one,
        // arrows from there to the others.
        connect(chip, &QToolButton::toggled, chip, [chip](bool isDown) {
            chip->setFocusPolicy(isDown ? Qt::TabFocus : Qt::NoFocus);
            QFont font = chip->font();
            font.setUnderline(isDown);
            chip->setFont(font);
        });
        auto* shortcut = new QShortcut(keys, this); // A button's own goes with its text.
        connect(shortcut, &QShortcut::activated, chip, &QToolButton::click);
        chip->setToolTip(ShortcutText(keys));
        m_pGroup->addButton(chip, static_cast<int>(i));
        layout->addWidget(chip);
        m_vChips.push_back(chip);
    }
    layout->addStretch();
    m_pQuery = new QLineEdit(this); // Behind the chips for Tab too.
    layout->addWidget(m_pQuery);
    setUpQuery();
    m_vChips.front()->setChecked(true);
    connect(m_pGroup, &QButtonGroup::idClicked, this,
            [this](int id) { emit filterChosen(static_cast<ERowFilter>(id)); });
    setCounts({});
}

void CChipsLine::setUpQuery() {
    m_pQuery->setObjectName("query");
    m_pQuery->setAccessibleName(tr("Filter"));
    m_pQuery->setPlaceholderText(tr("Filter"));
    m_pQuery->setToolTip(tr("Words of title, artist or file; 120-130; key:8A; state:problem"));
    m_pQuery->setClearButtonEnabled(true);
    m_pQuery->setMaximumWidth(fontMetrics().averageCharWidth() * kQueryChars);
    m_pQuery->installEventFilter(this);
    connect(m_pQuery, &QLineEdit::textChanged, this, &CChipsLine::queryChanged);
    tintHint();
}

/// The field's hint in a colour that can be read: some palettes leave it black on black.
void CChipsLine::tintHint() {
    QPalette own;
    for (auto const group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        own.setColor(group, QPalette::PlaceholderText,
                     HintColor(palette().color(group, QPalette::Text),
                               palette().color(group, QPalette::Base)));
    }
    m_pQuery->setPalette(own);
}

void CChipsLine::focusQuery() {
    m_pQuery->show();
    m_pQuery->setFocus(Qt::ShortcutFocusReason);
    m_pQuery->selectAll();
}

bool CChipsLine::eventFilter(QObject* object, QEvent* event) {
    auto const type = event->type();
    int const key = type == QEvent::KeyPress || type == QEvent::ShortcutOverride
                        ? static_cast<QKeyEvent*>(event)->key()
                        : 0;
    if (type == QEvent::ShortcutOverride && key == Qt::Key_Escape) {
        event->accept(); // it is not to stop the analysis
        return true;
    }
    if (type == QEvent::KeyPress && (key == Qt::Key_Escape || key == Qt::Key_Return ||
                                     key == Qt::Key_Enter || key == Qt::Key_Down)) {
        if (key == Qt::Key_Escape) {
            m_pQuery->clear();
        }
        emit queryLeft();
        return true;
    }
    if (type == QEvent::FocusOut) {
        makeRoom();
    }
    return QWidget::eventFilter(object, event);
}

void CChipsLine::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        tintHint();
    }
}

void CChipsLine::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    makeRoom();
}

void CChipsLine::makeRoom() {
    int width = m_pQuery->maximumWidth();
    for (QToolButton const* chip : m_vChips) {
        width += chip->sizeHint().width() + layout()->spacing();
    }
    m_pQuery->setVisible(width + 2 * kLineMarginX <= this->width() || m_pQuery->hasFocus() ||
                         !m_pQuery->text().isEmpty());
}

void CChipsLine::setCounts(CRowCounts const& counts) {
    std::array<QString, kChipNames.size()> const texts{
        tr("All %1").arg(CountText(counts.m_nAll)), tr("To do %1").arg(CountText(counts.m_nToDo)),
        tr("To review %1").arg(CountText(counts.m_nToReview)),
        tr("By hand %1").arg(CountText(counts.m_nByHand)),
        tr("Problems %1").arg(CountText(counts.m_nProblems))};
    for (std::size_t i = 0; i < m_vChips.size(); ++i) {
        if (m_vChips[i]->text() != texts[i]) {
            m_vChips[i]->setText(texts[i]);
        }
    }
}

ERowFilter CChipsLine::filter() const {
    return static_cast<ERowFilter>(m_pGroup->checkedId());
}

void CChipsLine::choose(ERowFilter filter) {
    m_vChips[static_cast<std::size_t>(filter)]->click();
}
