// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/EngineRate.h"
#include "desktop/PictureView.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

namespace {

constexpr double kStripLines = 6.0;      // Fixed: height in lines of text.
constexpr double kStripMixSide = 10.0;   // Fixed: pixels of a mix point's mark.
constexpr double kFirstSeconds = 8.0;    // Fixed: shown at first; some four measures.
constexpr double kShortestSeconds = 1.0; // Fixed: the closest look.
constexpr double kTurnShare = 0.1;   // Fixed: of the width, before a place that was out of view.
constexpr double kZoomStep = 1.25;   // Fixed: for one step of the wheel.
constexpr double kWheelStep = 120.0; // Standard: Qt, QWheelEvent::angleDelta, for most mice.

} // namespace

CBeatStrip::CBeatStrip(QWidget* parent) : CPictureView(parent) {
    setObjectName("beatStrip");
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

QSize CBeatStrip::sizeHint() const {
    return {minimumSizeHint().width(), static_cast<int>(fontMetrics().height() * kStripLines)};
}

CPictureSpan CBeatStrip::span() const {
    return {QRectF(rect()), m_dFirst, m_dShown / std::max(width(), 1)};
}

void CBeatStrip::onPictureChanged() {
    m_grabX.reset();
    m_bPanning = false;
    show(0.0, kFirstSeconds * kEngineRateHz);
}

/// Shows `shown` samples from `first` on, held to the song.
void CBeatStrip::show(double first, double shown) {
    double const samples = picture() == nullptr ? 0.0 : static_cast<double>(picture()->m_nSamples);
    double const shortest = kShortestSeconds * kEngineRateHz;
    m_dShown = std::clamp(shown, shortest, std::max(samples, shortest));
    m_dFirst = std::clamp(first, 0.0, std::max(samples - m_dShown, 0.0));
    repaintPicture();
    emit spanChanged();
}

void CBeatStrip::zoom(double factor, double x) {
    if (picture() == nullptr) {
        return;
    }
    double const stays = span().SampleAt(x);
    show(m_dFirst, m_dShown * factor);
    show(stays - x * span().m_dSamplesPerPixel, m_dShown);
}

void CBeatStrip::onPlaceChanged() {
    auto const sample = static_cast<double>(place());
    if (!m_bPanning && (sample < m_dFirst || sample > span().Last())) {
        show(sample - kTurnShare * m_dShown, m_dShown);
    }
}

void CBeatStrip::paintPicture(QPainter& painter, CPictureColors const& colors) const {
    CPictureSpan const all = span();
    CPictureSpan lower = all;
    lower.m_area.setTop(std::min<double>(fontMetrics().height(), height() - 1));
    PaintGround(painter, all, *picture(), colors);
    PaintEnvelopes(painter, lower, *picture(), colors, EHeights::PeaksRaised);
    PaintGrid(painter, all, lower.m_area.top(), *picture(), colors);
    PaintMixPoints(painter, lower, *picture(), colors, kStripMixSide);
}

void CBeatStrip::wheelEvent(QWheelEvent* event) {
    QPoint const delta = event->angleDelta();
    bool const isSideways = std::abs(delta.x()) > std::abs(delta.y());
    if (isSideways) {
        show(m_dFirst - delta.x() * span().m_dSamplesPerPixel, m_dShown);
    } else {
        zoom(std::pow(kZoomStep, -delta.y() / kWheelStep), event->position().x());
    }
    event->accept();
}

void CBeatStrip::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && picture() != nullptr) {
        m_grabX = event->position().x();
        m_dGrabFirst = m_dFirst;
    }
}

void CBeatStrip::mouseMoveEvent(QMouseEvent* event) {
    double const x = event->position().x();
    if (m_grabX && std::abs(x - *m_grabX) >= QApplication::startDragDistance()) {
        m_bPanning = true;
    }
    if (m_bPanning) {
        show(m_dGrabFirst - (x - *m_grabX) * span().m_dSamplesPerPixel, m_dShown);
    } else {
        CPictureView::mouseMoveEvent(event);
    }
}

void CBeatStrip::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && m_grabX) {
        if (!m_bPanning) {
            emit placeChosen(sampleAt(event->position().x()));
        }
        m_grabX.reset();
        m_bPanning = false;
    }
}
