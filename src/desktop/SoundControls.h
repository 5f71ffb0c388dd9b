// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QComboBox;
class QHBoxLayout;
class QSlider;

/// Levels of click and music, and how many measures are repeated.
/// Thread: main.
class CSoundControls : public QWidget {
    Q_OBJECT

public:
    explicit CSoundControls(QWidget* parent);

signals:
    /// Levels from 0 to 1.
    void levelsChosen(float music, float click);

    /// Measures; 0 for none.
    void loopChosen(int measures);

private:
    QSlider* addSlider(QHBoxLayout& line, QString const& name, int percent);

    QSlider* m_pClick;
    QSlider* m_pMusic;
    QComboBox* m_pLoop;
};
