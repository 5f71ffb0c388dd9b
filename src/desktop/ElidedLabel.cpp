// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ElidedLabel.h"

#include "desktop/Texts.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>

CElidedLabel::CElidedLabel(Qt::TextElideMode mode, QWidget* parent) : QLabel(parent), m_mode(mode) {
    setTextFormat(Qt::PlainText);
}

QSize CElidedLabel::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

void CElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QRect const area = contentsRect();
    QString const line = QString(text()).replace(QLatin1Char('\n'), QLatin1Char(' '));
    QString const shown = fontMetrics().elidedText(line, m_mode, area.width());
    style()->drawItemText(&painter, area, static_cast<int>(alignment()), palette(), isEnabled(),
                          shown, foregroundRole());
}

bool CElidedLabel::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        bool const fits = fontMetrics().horizontalAdvance(text()) <= contentsRect().width();
        setToolTip(fits ? QString() : PlainTip(text()));
    }
    return QLabel::event(event);
}
