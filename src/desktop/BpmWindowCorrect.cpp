// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Corrections of the selected rows, and the way back.

#include "desktop/BpmWindow.h"

#include "app/BPMController.h"
#include "desktop/CorrectionTexts.h"
#include "desktop/FileTableView.h"
#include "desktop/NoticeBar.h"
#include "desktop/Numbers.h"
#include "desktop/SongPane.h"
#include "desktop/StatusLine.h"

#include <QAction>
#include <QHBoxLayout>
#include <QMenu>
#include <QToolButton>
#include <algorithm>
#include <chrono>
#include <utility>

namespace {

constexpr int kBoxMargin = 6;   // Fixed: pixels in front of the buttons.
constexpr int kRefreshMs = 200; // Fixed: how late what can be done may follow a running batch.

std::int64_t Now() {
    auto const time = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(time).count();
}

std::optional<std::int64_t> TimeOf(std::optional<CUndoStep> const& step) {
    return step ? std::optional(step->m_nTime) : std::nullopt;
}

} // namespace

void BpmWindow::addCorrection(QString const& name, char const* word, QKeySequence const& key) {
    CTempoFix const fix = TempoFixOf(word).value_or(CTempoFix());
    QString const text = tr("Tempo %1").arg(RatioText(fix));
    QAction* const action = makeAction(name, text, text, {key});
    m_vCorrections.push_back({action, word, action->toolTip()});
    connect(action, &QAction::triggered, this, [this, fix] {
        correct(m_pTable->selectedIds(), fix);
        showCorrections();
    });
}

void BpmWindow::setUpCorrections() {
    constexpr auto kShifted = Qt::CTRL | Qt::SHIFT;
    addCorrection("actionDouble", "x2", {Qt::CTRL | Qt::Key_D});
    addCorrection("actionHalve", "/2", {Qt::CTRL | Qt::Key_H});
    addCorrection("action3To2", "3:2", {Qt::CTRL | Qt::Key_3});
    addCorrection("action2To3", "2:3", {kShifted | Qt::Key_3});
    addCorrection("action4To3", "4:3", {Qt::CTRL | Qt::Key_4});
    addCorrection("action3To4", "3:4", {kShifted | Qt::Key_4});
    m_pType = makeAction("actionType", tr("Type the tempo"), tr("Type the tempo of the row"),
                         {QKeySequence(Qt::Key_F2)});
    m_pUndo =
        makeAction("actionUndo", tr("Undo"), tr("Take back the last step"), {QKeySequence::Undo});
    m_pRedo = makeAction("actionRedo", tr("Redo"), tr("Do again what was taken back"),
                         {QKeySequence(kShifted | Qt::Key_Z)});
    m_pNextReading = makeAction("actionNextReading", tr("Next reading of the tempo"),
                                tr("Take the next likely tempo of the row"),
                                {QKeySequence(Qt::ALT | Qt::Key_Return)});
    connect(m_pNextReading, &QAction::triggered, this, &BpmWindow::takeNextReading);
    connect(m_pPane, &CSongPane::tempoChosen, this, [this](double bpm) {
        correct({m_model.idAt(m_pTable->currentIndex().row())}, {.m_dBpm = bpm});
        showSong();
    });
    connect(m_pType, &QAction::triggered, m_pTable, &CFileTableView::editTempo);
    connect(m_pUndo, &QAction::triggered, this, &BpmWindow::undo);
    connect(m_pRedo, &QAction::triggered, this, &BpmWindow::redo);
    connect(m_pTable, &CFileTableView::tempoTyped, this,
            [this](std::size_t id, double bpm) { correct({id}, {.m_dBpm = bpm}); });
    m_nStart = Now();
    m_correctionTimer.setSingleShot(true);
    m_correctionTimer.setInterval(kRefreshMs);
    connect(&m_correctionTimer, &QTimer::timeout, this, &BpmWindow::showCorrections);
    connect(m_pTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &BpmWindow::showCorrections);
}

QMenu* BpmWindow::makeCorrectionMenu() {
    auto* menu = new QMenu(tr("Correct the tempo"), this);
    menu->setObjectName("correctionMenu");
    for (CCorrectionAction const& correction : m_vCorrections) {
        menu->addAction(correction.m_pAction);
    }
    menu->addActions({m_pNextReading, m_pType});
    return menu;
}

// The three that one needs most.
QWidget* BpmWindow::makeCorrectionButtons() {
    auto* box = new QWidget(this);
    auto* line = new QHBoxLayout(box);
    line->setContentsMargins(kBoxMargin, 0, 0, 0);
    line->setSpacing(0);
    for (std::size_t const place : {1U, 0U, 2U}) {
        CCorrectionAction const& correction = m_vCorrections[place];
        auto* button = new QToolButton(box);
        button->setObjectName("button_" + correction.m_pAction->objectName());
        correction.m_pAction->setIconText(
            RatioText(TempoFixOf(correction.m_pWord).value_or(CTempoFix())));
        button->setDefaultAction(correction.m_pAction);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::TabFocus);
        button->setAccessibleName(correction.m_pAction->text());
        line->addWidget(button);
    }
    return box;
}

void BpmWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    m_pCorrectionRoom->setVisible(width() >= m_nWidthForCorrections);
}

void BpmWindow::correct(std::vector<std::size_t> const& rows, CTempoFix const& fix) {
    if (m_pCorrector->Correct(rows, fix)) {
        m_pStatusLine->setSummary({}); // what was told there is no longer the last step
    }
}

// The readings come from the analysis, or from the pane that has heard the song.
void BpmWindow::takeNextReading() {
    std::size_t const id = m_model.idAt(m_pTable->currentIndex().row());
    std::vector<CTempoCandidate> readings = m_controller.rowCandidates(id);
    if (readings.empty() && m_pPane->picture() != nullptr) {
        readings = m_pPane->picture()->m_vCandidates;
    }
    if (readings.empty()) {
        return;
    }
    double const bpm = m_pCorrector->Tempo(id);
    auto const now = std::ranges::find_if(readings, [bpm](CTempoCandidate const& reading) {
        return AreSameTempo(static_cast<double>(reading.m_fBpm), bpm);
    });
    bool const isLast = now == readings.end() || now + 1 == readings.end();
    CTempoCandidate const& next = isLast ? readings.front() : *(now + 1);
    correct({id}, {.m_dBpm = static_cast<double>(next.m_fBpm)});
    showSong();
}

// A tip says what a key does, or why it does nothing.
void BpmWindow::showCorrections() {
    std::vector<std::size_t> const rows = m_pTable->selectedIds();
    CTempoSpread const spread = m_pCorrector->Spread(rows);
    for (CCorrectionAction const& correction : m_vCorrections) {
        ECorrectionRefusal const refusal =
            rows.empty() ? ECorrectionRefusal::NothingSelected
                         : RefusalOf(spread, TempoFixOf(correction.m_pWord).value_or(CTempoFix()));
        QString const why = RefusalText(refusal);
        correction.m_pAction->setEnabled(why.isEmpty());
        correction.m_pAction->setToolTip(
            why.isEmpty() ? correction.m_sTip : correction.m_sTip + QLatin1Char('\n') + why);
    }
    m_pType->setEnabled(!rows.empty());
    m_pNextReading->setEnabled(rows.size() == 1);
}

// Hiding rows is a step too, but one that only the window knows.
bool BpmWindow::isHidingLatest(std::optional<std::int64_t> latestStep) {
    std::erase_if(m_vHideSteps, [this](CHideStep const& hide) {
        return std::none_of(hide.m_vRows.begin(), hide.m_vRows.end(), [this](std::size_t row) {
            return m_controller.rowState(row).m_bHidden;
        });
    });
    return !m_vHideSteps.empty() && (!latestStep || m_vHideSteps.back().m_nTime > *latestStep);
}

void BpmWindow::undo() {
    std::optional<CUndoStep> const step = m_pCorrector->State().m_undo;
    if (isHidingLatest(TimeOf(step))) {
        bringBack();
    } else if (step) {
        m_sStep = tr("Undone: %1").arg(StepText(*step));
        m_pCorrector->Undo();
    }
}

void BpmWindow::redo() {
    if (std::optional<CUndoStep> const step = m_pCorrector->State().m_redo) {
        m_sStep = tr("Done again: %1").arg(StepText(*step));
        m_pCorrector->Redo();
    }
}

// A notice tells what was left as it is; the line at the bottom, what was done.
void BpmWindow::tellStep(CUndoReport const& report) {
    if (report.m_nLeft > 0) {
        m_pNotices->post({ENotice::Undone, LeftText(report), {{tr("Close"), {}}}});
    } else {
        m_pNotices->withdraw(ENotice::Undone);
    }
    m_pStatusLine->setSummary(report.m_nDone > 0 ? m_sStep : QString());
}

void BpmWindow::hideRows() {
    std::vector<std::size_t> const rows = m_pTable->selectedIds();
    if (!rows.empty()) {
        m_vHideSteps.push_back({rows, Now()});
        m_controller.setHidden(rows, true);
    }
}

// What has come back meanwhile, because it was dropped again, is no step any more.
void BpmWindow::bringBack() {
    if (isHidingLatest(std::nullopt)) {
        std::vector<std::size_t> const rows = std::move(m_vHideSteps.back().m_vRows);
        m_vHideSteps.pop_back();
        m_controller.setHidden(rows, false);
    }
}

void BpmWindow::showSteps() {
    CUndoState const state = m_pCorrector->State();
    QString done;
    bool const isHiding = isHidingLatest(TimeOf(state.m_undo));
    if (isHiding) {
        done =
            tr("hiding %Ln file(s)", nullptr, static_cast<int>(m_vHideSteps.back().m_vRows.size()));
    } else if (state.m_undo) {
        done = StepText(*state.m_undo);
    }
    bool const isOfNow = state.m_undo && state.m_undo->m_nTime > m_nStart &&
                         state.m_undo->m_kind != EStepKind::Analysis;
    m_pStatusLine->showUndo(isHiding || isOfNow);
    m_pUndo->setEnabled(!done.isEmpty());
    m_pUndo->setText(done.isEmpty() ? tr("Undo") : tr("Undo: %1").arg(done));
    m_pRedo->setEnabled(state.m_redo.has_value());
    m_pRedo->setText(state.m_redo ? tr("Redo: %1").arg(StepText(*state.m_redo)) : tr("Redo"));
    if (std::optional<CUndoReport> const report = m_pCorrector->TakeReport()) {
        tellStep(*report);
    }
    if (!m_correctionTimer.isActive()) {
        m_correctionTimer.start();
    }
}

void BpmWindow::endCorrections() {
    m_pCorrector->End();
}
