// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/AccentsView.h"

#include "desktop/PaneTexts.h"
#include "desktop/PicturePaint.h"
#include "desktop/Texts.h"

#include <QPainter>
#include <algorithm>
#include <utility>

namespace {

constexpr int kBarPixels = 5; // Fixed: width of a bar.
constexpr int kBarGap = 1;    // Fixed: pixels between two bars.
constexpr int kNameGap = 4;   // Fixed: pixels behind the name.
constexpr double kFoot = 1.0; // Fixed: pixels of a bar without weight.
constexpr int kBarsPixels = static_cast<int>(kAccentSteps) * (kBarPixels + kBarGap);

} // namespace

CAccentsView::CAccentsView(QString name, QWidget* parent)
    : QWidget(parent), m_sName(std::move(name)) {
    setAccessibleName(m_sName);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

int CAccentsView::nameWidth() const {
    return fontMetrics().horizontalAdvance(m_sName) + kNameGap;
}

QSize CAccentsView::sizeHint() const {
    return {nameWidth() + kBarsPixels, fontMetrics().height()};
}

void CAccentsView::setAccents(Accents const& accents) {
    m_fAccents = accents;
    QString const text = AccentsText(accents);
    setAccessibleDescription(text);
    setToolTip(PlainTip(tr("Accents of a measure's half beats, in percent: %1").arg(text)));
    setVisible(
        std::any_of(accents.begin(), accents.end(), [](float weight) { return weight > 0.0f; }));
    update();
}

// The name stands at the beginning of a line, the measure goes from left to right.
void CAccentsView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    CPictureColors const colors(palette());
    QRect const all = rect();
    bool const isTurned = layoutDirection() == Qt::RightToLeft;
    QRect const name(isTurned ? all.width() - nameWidth() : 0, 0, nameWidth(), all.height());
    painter.setPen(palette().color(QPalette::WindowText));
    auto const side = isTurned ? Qt::AlignRight : Qt::AlignLeft;
    painter.drawText(name, static_cast<int>(Qt::AlignVCenter | side), m_sName);
    int x = isTurned ? 0 : nameWidth();
    for (std::size_t i = 0; i < kAccentSteps; ++i) {
        double const height =
            kFoot + static_cast<double>(m_fAccents[i]) * (all.height() - 2 * kFoot);
        bool const isBeat = i % 2 == 0;
        painter.fillRect(QRectF(x, all.height() - height, kBarPixels, height),
                         isBeat ? colors.m_energy : colors.m_bass);
        x += kBarPixels + kBarGap;
    }
}
