// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QElapsedTimer>
#include <QWidget>

/// The product's picture. A single click opens the home page; the further clicks of a double or
/// triple click do nothing. Space and Return do what a click does.
/// Thread: main.
class QxImageClickView : public QWidget {
    Q_OBJECT

public:
    explicit QxImageClickView(QWidget* parent = nullptr);

    QSize sizeHint() const override;

signals:
    /// The home page is wanted.
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QElapsedTimer m_sinceDoubleClick;
};
