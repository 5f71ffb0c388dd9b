// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ReasonLine.h"

#include "desktop/Glyphs.h"
#include "desktop/Margins.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

namespace {

constexpr int kReasonMarginY = 3; // Fixed: pixels above and below.

} // namespace

CReasonLine::CReasonLine(QWidget* parent) : QWidget(parent), m_pText(new QLabel(this)) {
    setObjectName("reasonLine");
    auto* sign = new QLabel(this);
    int const side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    sign->setPixmap(WarningIcon().pixmap(side));
    m_pText->setObjectName("reason");
    m_pText->setTextFormat(Qt::PlainText);
    m_pText->setWordWrap(true);
    m_pText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(kTextMarginX, kReasonMarginY, kTextMarginX, kReasonMarginY);
    layout->addWidget(sign, 0, Qt::AlignTop);
    layout->addWidget(m_pText, 1);
    hide();
}

void CReasonLine::setReason(QString const& reason) {
    m_pText->setText(reason);
    setVisible(!reason.isEmpty());
}
