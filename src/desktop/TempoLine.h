// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Tapping.h"
#include "song/TempoCandidates.h"

#include <QElapsedTimer>
#include <QWidget>
#include <cstdint>
#include <vector>

class QButtonGroup;
class QHBoxLayout;
class QLabel;
class QRadioButton;
class QToolButton;

/// The readings of a song's tempo, of which one can be taken, and a button to tap another one.
/// Thread: main.
class CTempoLine : public QWidget {
    Q_OBJECT

public:
    explicit CTempoLine(QWidget* parent = nullptr);

    /// Shows the likeliest of these; what was tapped before is forgotten.
    void setCandidates(std::vector<CTempoCandidate> const& candidates);

    /// Marks the reading that the song has now; 0 for none.
    void setTempo(double bpm);

    /// Takes a tap at the time of its event, in milliseconds; 0: at this moment.
    void tap(std::uint64_t timestamp);

    /// Takes what was tapped. Returns: false when that is no tempo yet.
    bool takeTapped();

signals:
    void tempoChosen(double bpm);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void showTaps();

    QHBoxLayout* m_pReadings;
    QButtonGroup* m_pGroup;
    QToolButton* m_pTap;
    QLabel* m_pTaps;
    std::vector<double> m_vBpms; // Of the readings, all of them.
    CTapping m_tapping;
    QElapsedTimer m_clock; // For events without a time.
};
