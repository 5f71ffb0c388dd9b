// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// A line of text that is cut with an ellipsis where there is no room; the whole text is then its
/// tool tip. Screen readers always get the whole text.
/// Thread: main.
class CElidedLabel : public QLabel {
    Q_OBJECT

public:
    CElidedLabel(Qt::TextElideMode mode, QWidget* parent);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    Qt::TextElideMode m_mode;
};
