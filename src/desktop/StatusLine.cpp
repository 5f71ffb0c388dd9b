// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/StatusLine.h"

#include "desktop/ElidedLabel.h"
#include "desktop/StatusTexts.h"

#include <QLabel>
#include <QProgressBar>
#include <QStyle>
#include <QStyleOptionProgressBar>
#include <QStylePainter>
#include <QToolButton>

namespace {

constexpr int kSideMargin = 6;      // Fixed: pixels to the window's edges.
constexpr int kProgressWidth = 180; // Fixed: pixels.

/// In a bar that fills from the right, Fusion gives its text the colours of one that fills from the
/// left: white on white. There the text is drawn for the part that is still empty, which lies left.
class CProgressBar : public QProgressBar {
public:
    using QProgressBar::QProgressBar;

protected:
    void paintEvent(QPaintEvent* event) override {
        bool const isMirrored = layoutDirection() == Qt::RightToLeft && maximum() > minimum();
        if (!isMirrored || style()->name().compare("fusion", Qt::CaseInsensitive) != 0) {
            QProgressBar::paintEvent(event);
            return;
        }
        QStyleOptionProgressBar option;
        initStyleOption(&option);
        option.textVisible = false;
        QStylePainter painter(this);
        painter.drawControl(QStyle::CE_ProgressBar, option);
        option.textVisible = true;
        option.rect = style()->subElementRect(QStyle::SE_ProgressBarLabel, &option, this);
        option.direction = Qt::LeftToRight;
        option.progress = option.maximum - option.progress + option.minimum;
        QPalette const own = option.palette;
        option.palette.setColor(QPalette::Text, own.color(QPalette::HighlightedText));
        option.palette.setColor(QPalette::HighlightedText, own.color(QPalette::Text));
        painter.drawControl(QStyle::CE_ProgressBarLabel, option);
    }
};

} // namespace

CStatusLine::CStatusLine(QWidget* parent)
    : QStatusBar(parent),
      m_pActivity(new CElidedLabel(Qt::ElideMiddle, this)),
      m_pSummary(new CElidedLabel(Qt::ElideRight, this)),
      m_pProgress(new CProgressBar(this)),
      m_pUndo(new QToolButton(this)),
      m_pOnlyLook(new QLabel(tr("Only looking: nothing is written"), this)) {
    setObjectName("statusBar");
    setAccessibleName(tr("Status bar"));
    setSizeGripEnabled(false);
    setContentsMargins(kSideMargin, 0, kSideMargin, 0);
    m_pActivity->setObjectName("activity");
    m_pProgress->setObjectName("overallProgress");
    m_pProgress->setAccessibleName(tr("Overall progress"));
    m_pProgress->setFixedWidth(kProgressWidth);
    m_pProgress->hide();
    addWidget(m_pActivity, 1);
    m_pSummary->setObjectName("summary");
    m_pSummary->hide();
    addPermanentWidget(m_pSummary);
    addPermanentWidget(m_pProgress);
    m_pUndo->setObjectName("statusUndo");
    m_pUndo->setAutoRaise(true);
    m_pUndo->setFocusPolicy(Qt::TabFocus);
    m_pUndo->hide();
    addPermanentWidget(m_pUndo);
    m_pOnlyLook->setObjectName("onlyLook");
    addPermanentWidget(m_pOnlyLook);
    setOnlyLook(false);
}

void CStatusLine::setSummary(QString const& summary) {
    m_pSummary->setText(summary);
    m_pSummary->setVisible(!summary.isEmpty());
}

void CStatusLine::setUndo(QAction& undo) {
    m_pUndo->setDefaultAction(&undo);
}

void CStatusLine::showUndo(bool isWanted) {
    m_pUndo->setVisible(isWanted);
}

void CStatusLine::setOnlyLook(bool isOnlyLook) {
    m_pOnlyLook->setVisible(isOnlyLook);
}

// A single file that is being read, and folders that are being searched, have no percentage yet.
void CStatusLine::setStatus(CBatchStatus const& status, std::size_t problems) {
    m_pActivity->setText(ActivityText(status, problems));
    bool const isBusy =
        status.m_bRunning ? status.m_bReading && status.m_nBatchFiles == 1 : status.m_bAdding;
    m_pProgress->setMaximum(isBusy ? 0 : 100);
    m_pProgress->setValue(OverallPercent(status));
    m_pProgress->setVisible(status.m_bRunning || status.m_bAdding);
}
