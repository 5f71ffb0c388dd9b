// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PictureView.h"

#include <QMouseEvent>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kBarLines = 3.0;   // Fixed: height in lines of text.
constexpr double kBarMixSide = 7.0; // Fixed: pixels of a mix point's mark.
constexpr double kMarksRoom = 9.0;  // Fixed: pixels below the envelopes, for the marks.

} // namespace

CSongBar::CSongBar(QWidget* parent) : CPictureView(parent) {
    setObjectName("songBar");
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize CSongBar::sizeHint() const {
    return {minimumSizeHint().width(),
            static_cast<int>(fontMetrics().height() * kBarLines + kMarksRoom)};
}

CPictureSpan CSongBar::span() const {
    double const samples =
        picture() == nullptr ? 1.0 : std::max(static_cast<double>(picture()->m_nSamples), 1.0);
    return {QRectF(rect()), 0.0, samples / std::max(width(), 1)};
}

void CSongBar::setFrame(double first, double last) {
    m_dFrameFirst = first;
    m_dFrameLast = last;
    repaintPicture();
}

void CSongBar::paintPicture(QPainter& painter, CPictureColors const& colors) const {
    CPictureSpan const whole = span();
    CPictureSpan upper = whole;
    upper.m_area.setHeight(std::max(whole.m_area.height() - kMarksRoom, 1.0));
    PaintGround(painter, whole, *picture(), colors);
    PaintEnvelopes(painter, upper, *picture(), colors, EHeights::QuietRaised);
    PaintFade(painter, upper, *picture(), colors);
    PaintMixPoints(painter, whole, *picture(), colors, kBarMixSide);
    double const left = std::max(whole.XOf(m_dFrameFirst), 0.0);
    double const right = std::min(whole.XOf(m_dFrameLast), static_cast<double>(width()));
    if (right > left) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(colors.m_measure);
        painter.drawRect(QRectF(std::floor(left) + 0.5, 0.5, std::max(right - left - 1.0, 1.0),
                                upper.m_area.height() - 1.0));
    }
}

void CSongBar::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && picture() != nullptr) {
        emit placeChosen(sampleAt(event->position().x()));
    }
}

void CSongBar::mouseMoveEvent(QMouseEvent* event) {
    CPictureView::mouseMoveEvent(event);
    if ((event->buttons() & Qt::LeftButton) != 0 && picture() != nullptr) {
        emit placeChosen(sampleAt(event->position().x()));
    }
}
