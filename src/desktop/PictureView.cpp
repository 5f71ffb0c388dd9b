// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PictureView.h"

#include "desktop/PaneTexts.h"
#include "desktop/PictureAccess.h"
#include "desktop/Tints.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int kPlaceWidth = 2;         // Fixed: pixels of the line where one is.
constexpr int kSmallestWidth = 100;    // Fixed: pixels.
constexpr int kFocusWidth = 2;         // Fixed: pixels of the frame around what has the keyboard.
constexpr double kSmallestLines = 1.8; // Fixed: smallest height, in lines of text.

} // namespace

CPictureView::CPictureView(QWidget* parent) : QWidget(parent) {
    InstallPictureAccess();
    setLayoutDirection(Qt::LeftToRight); // Time does not turn with the script.
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QSize CPictureView::minimumSizeHint() const {
    return {kSmallestWidth, static_cast<int>(fontMetrics().height() * kSmallestLines)};
}

void CPictureView::setPicture(CSongPicturePtr picture) {
    m_pPicture = std::move(picture);
    m_nPlace = 0;
    onPictureChanged();
    repaintPicture();
}

void CPictureView::setPlace(std::int64_t sample, bool isTold) {
    if (sample == m_nPlace) {
        return;
    }
    update(placeRect());
    m_nPlace = sample;
    update(placeRect());
    onPlaceChanged();
    if (isTold && QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, static_cast<qlonglong>(sample));
        QAccessible::updateAccessibility(&event);
    }
}

void CPictureView::repaintPicture() {
    m_kept = {};
    update();
}

std::int64_t CPictureView::sampleAt(double x) const {
    if (m_pPicture == nullptr || m_pPicture->m_nSamples <= 0) {
        return 0;
    }
    auto const last = static_cast<double>(m_pPicture->m_nSamples - 1);
    return std::llround(std::clamp(span().SampleAt(x), 0.0, last));
}

QRect CPictureView::placeRect() const {
    if (m_pPicture == nullptr) {
        return {};
    }
    // Far outside, a place may be beyond what an int holds.
    double const x = std::clamp(span().XOf(static_cast<double>(m_nPlace)), -10.0, width() + 10.0);
    return {static_cast<int>(std::floor(x)) - kPlaceWidth / 2, 0, kPlaceWidth, height()};
}

void CPictureView::paintEvent(QPaintEvent* event) {
    CPictureColors const colors(palette());
    if (m_kept.isNull()) {
        m_kept = QPixmap(size() * devicePixelRatioF());
        m_kept.setDevicePixelRatio(devicePixelRatioF());
        m_kept.fill(colors.m_ground);
        QPainter painter(&m_kept);
        painter.setFont(font());
        if (m_pPicture != nullptr && m_pPicture->m_nSamples > 0) {
            paintPicture(painter, colors);
        }
    }
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawPixmap(0, 0, m_kept);
    painter.fillRect(placeRect(), colors.m_place);
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        paintFocus(painter, colors);
    }
}

// What styles draw is too faint on black.
void CPictureView::paintFocus(QPainter& painter, CPictureColors const& colors) const {
    QColor const mark = SignColor(palette().color(QPalette::Highlight), colors.m_ground);
    painter.setPen(QPen(mark, kFocusWidth, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
}

void CPictureView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    repaintPicture();
}

void CPictureView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    repaintPicture();
}

void CPictureView::mouseMoveEvent(QMouseEvent* event) {
    if (m_pPicture != nullptr) {
        QString const text = MusicalPlaceText(*m_pPicture, sampleAt(event->position().x()));
        QToolTip::showText(event->globalPosition().toPoint(), text, this);
    }
}

void CPictureView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}
