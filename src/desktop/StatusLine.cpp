// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/StatusLine.h"

#include "desktop/ElidedLabel.h"
#include "desktop/Texts.h"

#include <QProgressBar>

namespace {

constexpr int kNoticeMilliseconds = 6000; // Fixed: long enough to read a sentence twice.
constexpr int kSideMargin = 6;            // Fixed: pixels to the window's edges.
constexpr int kProgressWidth = 180;       // Fixed: pixels.

} // namespace

CStatusLine::CStatusLine(QWidget* parent)
    : QStatusBar(parent),
      m_pActivity(new CElidedLabel(Qt::ElideMiddle, this)),
      m_pMessage(new CElidedLabel(Qt::ElideRight, this)),
      m_pProgress(new QProgressBar(this)) {
    setObjectName("statusBar");
    setAccessibleName(tr("Status bar"));
    setSizeGripEnabled(false);
    setContentsMargins(kSideMargin, 0, kSideMargin, 0);
    m_pActivity->setObjectName("activity");
    m_pMessage->setObjectName("message");
    m_pMessage->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_pProgress->setObjectName("overallProgress");
    m_pProgress->setAccessibleName(tr("Overall progress"));
    m_pProgress->setFixedWidth(kProgressWidth);
    m_pProgress->hide();
    addWidget(m_pActivity);
    addWidget(m_pMessage, 1);
    addPermanentWidget(m_pProgress);
    m_noticeTimer.setSingleShot(true);
    connect(&m_noticeTimer, &QTimer::timeout, this, &CStatusLine::showStanding);
}

void CStatusLine::setStatus(CBatchStatus const& status) {
    m_pActivity->setText(ActivityText(status));
    m_pProgress->setMaximum(status.m_bAdding && !status.m_bRunning ? 0 : 100);
    m_pProgress->setValue(OverallPercent(status));
    m_pProgress->setVisible(status.m_bRunning || status.m_bAdding);
}

void CStatusLine::setProblem(QString const& text) {
    m_sProblem = text;
    if (!m_noticeTimer.isActive()) {
        showStanding();
    }
}

void CStatusLine::setNotice(QString const& text) {
    m_pMessage->setText(text);
    m_noticeTimer.start(kNoticeMilliseconds);
}

void CStatusLine::dropNotice() {
    m_noticeTimer.stop();
    showStanding();
}

void CStatusLine::showStanding() {
    m_pMessage->setText(m_sProblem);
}
