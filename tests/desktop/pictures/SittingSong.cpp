// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The pane with its song.

#include "desktop/FileTableView.h"
#include "desktop/PictureView.h"
#include "desktop/SongPane.h"
#include "desktop/pictures/Sitting.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QTest>
#include <QToolButton>
#include <QToolTip>

namespace {

constexpr int kMeasures = 8;          // Fixed: passed before the song is drawn.
constexpr int kTapsMs = 480;          // Fixed: from tap to tap.
constexpr int kTaps = 8;              // Fixed.
constexpr double kTipPlace = 0.58;    // Fixed: where the pointer is, of the strip's width.
constexpr quint64 kFirstTapMs = 1000; // Fixed: time of the first event.

} // namespace

void CSitting::DrawSong() {
    Pane()->takeFocus();
    for (int measure = 0; measure < kMeasures; ++measure) {
        QTest::keyClick(m_window.focusWidget(), Qt::Key_Right, Qt::ControlModifier);
    }
    Draw(m_window, "pane");
    auto* play = Pane()->findChild<QToolButton*>("panePlay");
    play->click();
    Draw(m_window, "playing");
    play->click();
    for (int tap = 0; tap < kTaps; ++tap) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_T, Qt::NoModifier, "t");
        press.setTimestamp(kFirstTapMs + static_cast<quint64>(tap * kTapsMs));
        QApplication::sendEvent(m_window.focusWidget(), &press);
    }
    Draw(m_window, "taps");
    DrawTip("tip");
    Settle([this] { Choose(Table()->model()->rowCount() - 1, 0); });
    Draw(m_window, "unheard");
    ChooseSong();
    Table()->setFocus();
}

/// With the tip where the desktop would put it.
void CSitting::DrawTip(char const* state) {
    auto* strip = Pane()->findChild<QWidget*>("beatStrip");
    QPoint const place(static_cast<int>(strip->width() * kTipPlace), strip->height() / 2);
    QTest::mouseMove(strip, place);
    QTest::qWait(100);
    QPixmap picture = m_window.grab();
    for (QWidget* tip : QApplication::topLevelWidgets()) {
        if (tip->inherits("QTipLabel") && tip->isVisible()) {
            QPainter painter(&picture);
            painter.drawPixmap(tip->pos() - m_window.mapToGlobal(QPoint()), tip->grab());
        }
    }
    QToolTip::hideText();
    (void)picture.save(m_sFolder + "/" + state + ".png");
}
