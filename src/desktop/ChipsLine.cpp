// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ChipsLine.h"

#include "desktop/Numbers.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QShortcut>
#include <QToolButton>
#include <array>

namespace {

constexpr int kMarginX = 6; // Fixed: pixels to the window's edges.
constexpr int kMarginY = 2; // Fixed: pixels above and below.
constexpr std::array kNames{"chipAll", "chipToDo", "chipProblems"}; // In the order of ERowFilter.

} // namespace

CChipsLine::CChipsLine(QWidget* parent) : QWidget(parent), m_pGroup(new QButtonGroup(this)) {
    setObjectName("chipsLine");
    setAccessibleName(tr("Filters"));
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(kMarginX, kMarginY, kMarginX, kMarginY);
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        auto* chip = new QToolButton(this);
        auto const key = static_cast<Qt::Key>(Qt::Key_1 + static_cast<int>(i));
        QKeySequence const keys(Qt::ALT | key);
        chip->setObjectName(kNames[i]);
        chip->setAutoRaise(true);
        chip->setCheckable(true);
        chip->setFocusPolicy(Qt::TabFocus);
        auto* shortcut = new QShortcut(keys, this); // A button's own goes with its text.
        connect(shortcut, &QShortcut::activated, chip, &QToolButton::click);
        chip->setToolTip(keys.toString(QKeySequence::NativeText));
        m_pGroup->addButton(chip, static_cast<int>(i));
        layout->addWidget(chip);
        m_vChips.push_back(chip);
    }
    layout->addStretch();
    m_vChips.front()->setChecked(true);
    connect(m_pGroup, &QButtonGroup::idClicked, this,
            [this](int id) { emit filterChosen(static_cast<ERowFilter>(id)); });
    setCounts({});
}

void CChipsLine::setCounts(CRowCounts const& counts) {
    std::array<QString, kNames.size()> const texts{
        tr("All %1").arg(CountText(counts.m_nAll)), tr("To do %1").arg(CountText(counts.m_nToDo)),
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
