// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/TempoLine.h"

#include "desktop/CorrectionTexts.h"
#include "desktop/Numbers.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMouseEvent>
#include <QRadioButton>
#include <QToolButton>
#include <algorithm>

namespace {

constexpr std::size_t kMostShown = 3;  // Fixed: as many as have room.
constexpr int kReadingGap = 14;        // Fixed: pixels from one reading to the next.
constexpr double kMilliseconds = 1e-3; // seconds

} // namespace

CTempoLine::CTempoLine(QWidget* parent)
    : QWidget(parent),
      m_pReadings(new QHBoxLayout),
      m_pGroup(new QButtonGroup(this)),
      m_pTap(new QToolButton(this)),
      m_pTaps(new QLabel(this)) {
    setObjectName("tempoLine");
    m_clock.start();
    m_pReadings->setSpacing(kReadingGap);
    m_pTap->setObjectName("tapButton");
    m_pTap->setText(tr("Tap"));
    m_pTap->setToolTip(tr("Tap the tempo (T); Enter takes it"));
    m_pTap->installEventFilter(this);
    m_pTaps->setObjectName("taps");
    m_pTaps->setTextFormat(Qt::PlainText);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->addLayout(m_pReadings);
    line->addStretch();
    line->addWidget(m_pTaps);
    line->addWidget(m_pTap);
}

void CTempoLine::setCandidates(std::vector<CTempoCandidate> const& candidates) {
    for (QAbstractButton* button : m_pGroup->buttons()) {
        delete button;
    }
    m_vBpms.clear();
    QWidget* last = m_pTap;
    for (CTempoCandidate const& reading : candidates) {
        auto const bpm = static_cast<double>(reading.m_fBpm);
        m_vBpms.push_back(bpm);
        if (m_vBpms.size() > kMostShown) {
            continue;
        }
        auto* button = new QRadioButton(ReadingText(reading), this);
        button->setObjectName(QString("reading%1").arg(m_vBpms.size()));
        connect(button, &QRadioButton::clicked, this, [this, bpm] { emit tempoChosen(bpm); });
        m_pGroup->addButton(button, static_cast<int>(m_vBpms.size()) - 1);
        m_pReadings->addWidget(button);
        setTabOrder(last, button);
        last = button;
    }
    if (last != m_pTap) {
        setTabOrder(last, m_pTap); // It stands behind them.
    }
    m_tapping.Clear();
    showTaps();
}

void CTempoLine::setTempo(double bpm) {
    m_pGroup->setExclusive(false); // so that none can be on
    for (QAbstractButton* button : m_pGroup->buttons()) {
        auto const reading = m_vBpms[static_cast<std::size_t>(m_pGroup->id(button))];
        button->setChecked(AreSameTempo(reading, bpm));
    }
    m_pGroup->setExclusive(true);
}

void CTempoLine::tap(std::uint64_t timestamp) {
    m_tapping.Tap(timestamp != 0 ? static_cast<double>(timestamp) * kMilliseconds
                                 : static_cast<double>(m_clock.elapsed()) * kMilliseconds);
    showTaps();
}

void CTempoLine::showTaps() {
    int const count = static_cast<int>(m_tapping.Count());
    std::optional<CTappedTempo> const tempo = m_tapping.Tempo(m_vBpms);
    auto const number = [](double bpm, int decimals) {
        return QLocale().toString(bpm, 'f', decimals);
    };
    if (count == 0) {
        m_pTaps->clear();
    } else if (!tempo) {
        m_pTaps->setText(tr("%Ln tap(s) …", nullptr, count));
    } else {
        m_pTaps->setText(tr("%Ln tap(s): %1 ± %2, Enter takes %3", nullptr, count)
                             .arg(number(tempo->m_dTapped, 1), number(tempo->m_dError, 1),
                                  number(tempo->m_dBpm, 2)));
    }
}

bool CTempoLine::takeTapped() {
    std::optional<CTappedTempo> const tempo = m_tapping.Tempo(m_vBpms);
    if (tempo) {
        m_tapping.Clear();
        showTaps();
        emit tempoChosen(tempo->m_dBpm);
    }
    return tempo.has_value();
}

// A beat is where the finger goes down, not where it is lifted.
bool CTempoLine::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick) {
        tap(static_cast<QMouseEvent*>(event)->timestamp());
    } else if (event->type() == QEvent::KeyPress) {
        auto const* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Space && !key->isAutoRepeat()) {
            tap(key->timestamp());
        }
    }
    return QWidget::eventFilter(object, event);
}
