// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PicturePaint.h"

#include "desktop/Numbers.h"
#include "desktop/Tints.h"

#include <QFontMetricsF>
#include <QPolygonF>
#include <algorithm>
#include <cmath>
#include <span>

namespace {

constexpr double kMiddleShare = 0.66;         // Fixed: the line between energy and bass.
constexpr double kFullLevel = 255.0;          // Derived: the largest level of a picture.
constexpr double kLeastBeatPixels = 7.0;      // Fixed: closer lines would be a grey wall.
constexpr double kLeastHalfPixels = 28.0;     // Fixed: from beat to beat, for half beats.
constexpr double kHalfBeatShare = 0.2;        // Fixed: height of a half beat's line.
constexpr double kPeaksPower = 1.4;           // Fixed: of a root, so that attacks stand out.
constexpr double kNumberGap = 3.0;            // Fixed: pixels between a line and its number.
constexpr double kLeastMeasurePixels = 5.0;   // Fixed: closer measures get no lines.
constexpr int kShadePercent = 7;              // Fixed: ink in the ground of intro and outro.
constexpr QColor kMixColor(0xC2, 0x3B, 0x7A); // Fixed: crimson, on no palette's text.

QColor Between(QColor const& ink, QColor const& paper, int inkPercent) {
    auto const part = [inkPercent](int of, int rest) {
        return (of * inkPercent + rest * (100 - inkPercent)) / 100;
    };
    return {part(ink.red(), paper.red()), part(ink.green(), paper.green()),
            part(ink.blue(), paper.blue())};
}

/// The largest level of the samples [from, to).
int LargestLevel(std::vector<std::uint8_t> const& levels, double from, double to) {
    auto const count = static_cast<double>(levels.size());
    double const first = std::floor(from / kSamplesPerElement);
    double const last = std::max(std::ceil(to / kSamplesPerElement), first + 1.0);
    auto const begin = static_cast<std::ptrdiff_t>(std::clamp(first, 0.0, count));
    auto const end = static_cast<std::ptrdiff_t>(std::clamp(last, 0.0, count));
    auto const largest = std::max_element(levels.begin() + begin, levels.begin() + end);
    return begin == end ? 0 : *largest;
}

/// An upright line on whole pixels.
void PaintLine(QPainter& painter, double x, double top, double bottom, QColor const& color) {
    painter.fillRect(QRectF(std::floor(x), top, 1.0, bottom - top), color);
}

double SamplesPerMeasure(std::span<CBeat const> beats) {
    auto const length = static_cast<double>(beats.back().m_nSample - beats.front().m_nSample);
    return length / static_cast<double>(beats.size() - 1) * 4.0;
}

/// Every how many measures a line and a number have room.
int MeasureStep(double pixels, double wanted) {
    int step = 1;
    while (pixels * step < wanted && step < (1 << 20)) {
        step *= 2;
    }
    return step;
}

/// What is the same for every line of a grid.
struct CGridLook {
    CGridLook(QPainter const& painter, CPictureSpan const& span, std::span<CBeat const> beats)
        : m_dMeasurePixels(SamplesPerMeasure(beats) / span.m_dSamplesPerPixel) {
        auto const last = static_cast<std::size_t>(std::max(beats.back().m_nMeasure, 0));
        m_dNumberWidth =
            QFontMetricsF(painter.font()).horizontalAdvance(CountText(last)) + 3 * kNumberGap;
        m_nLineStep = MeasureStep(m_dMeasurePixels, kLeastMeasurePixels);
        m_nNumberStep = MeasureStep(m_dMeasurePixels, m_dNumberWidth);
    }

    [[nodiscard]] bool HasBeats() const { return m_dMeasurePixels >= 4 * kLeastBeatPixels; }
    [[nodiscard]] bool HasHalves() const { return m_dMeasurePixels >= 4 * kLeastHalfPixels; }

    double m_dMeasurePixels;
    double m_dNumberWidth = 0.0;
    int m_nLineStep = 1;   // measures from line to line
    int m_nNumberStep = 1; // and from number to number
};

void PaintMeasure(QPainter& painter, CPictureSpan const& span, CBeat const& beat,
                  CGridLook const& look, CPictureColors const& colors) {
    double const x = span.XOf(static_cast<double>(beat.m_nSample));
    if ((beat.m_nMeasure - 1) % look.m_nLineStep == 0) {
        PaintLine(painter, x, span.m_area.top(), span.m_area.bottom(), colors.m_measure);
    }
    if ((beat.m_nMeasure - 1) % look.m_nNumberStep == 0) {
        painter.setPen(colors.m_measure);
        painter.drawText(QPointF(x + kNumberGap, QFontMetricsF(painter.font()).ascent()),
                         CountText(static_cast<std::size_t>(beat.m_nMeasure)));
    }
}

} // namespace

CPictureColors::CPictureColors(QPalette const& palette)
    : m_ground(palette.color(QPalette::Base)),
      m_shade(Between(palette.color(QPalette::Text), m_ground, kShadePercent)),
      m_energy(SignColor(palette.color(QPalette::Highlight), m_ground)),
      m_bass(HintColor(palette.color(QPalette::Text), m_ground)),
      m_beat(HintColor(palette.color(QPalette::Text), m_ground)),
      m_measure(palette.color(QPalette::Text)),
      m_mix(SignColor(kMixColor, m_ground)),
      m_place(SignColor(QColor(Qt::red), m_ground)) {
}

void PaintGround(QPainter& painter, CPictureSpan const& span, CSongPicture const& picture,
                 CPictureColors const& colors) {
    painter.fillRect(span.m_area, colors.m_ground);
    auto const shade = [&](double from, double to) {
        double const left = std::max(span.XOf(from), span.m_area.left());
        double const right = std::min(span.XOf(to), span.m_area.right());
        if (right > left) {
            painter.fillRect(QRectF(left, span.m_area.top(), right - left, span.m_area.height()),
                             colors.m_shade);
        }
    };
    shade(0.0, static_cast<double>(picture.m_nIntroEnd));
    shade(static_cast<double>(picture.m_nOutroStart), static_cast<double>(picture.m_nSamples));
}

void PaintEnvelopes(QPainter& painter, CPictureSpan const& span, CSongPicture const& picture,
                    CPictureColors const& colors, EHeights heights) {
    double const step = 1.0 / painter.device()->devicePixelRatioF();
    double const middle = span.m_area.top() + std::floor(span.m_area.height() * kMiddleShare);
    double const above = middle - span.m_area.top();
    double const below = span.m_area.bottom() - middle;
    auto const heightOf = [heights](int level) {
        double const share = level / kFullLevel;
        // Levels are roots already.
        return heights == EHeights::PeaksRaised ? std::pow(share, kPeaksPower) : share;
    };
    int const columns = static_cast<int>(std::ceil(span.m_area.width() / step));
    for (int column = 0; column < columns; ++column) {
        double const x = span.m_area.left() + column * step;
        double const from = span.SampleAt(x);
        double const to = span.SampleAt(x + step);
        double const energy = heightOf(LargestLevel(picture.m_vEnergy, from, to)) * above;
        double const bass = heightOf(LargestLevel(picture.m_vBass, from, to)) * below;
        painter.fillRect(QRectF(x, middle - energy, step, energy), colors.m_energy);
        painter.fillRect(QRectF(x, middle, step, bass), colors.m_bass);
    }
}

void PaintGrid(QPainter& painter, CPictureSpan const& span, double numbersBottom,
               CSongPicture const& picture, CPictureColors const& colors) {
    auto const beats = picture.m_grid.Beats();
    if (beats.size() < 2) {
        return;
    }
    CGridLook const look(painter, span, beats);
    double const bottom = span.m_area.bottom();
    double const tick = (bottom - numbersBottom) * kHalfBeatShare;
    // From further left than what is seen: a number reaches to the right of its line.
    double const first = span.m_dFirst - look.m_dNumberWidth * span.m_dSamplesPerPixel;
    auto const isBefore = [](CBeat const& beat, double sample) {
        return static_cast<double>(beat.m_nSample) < sample;
    };
    for (auto beat = std::lower_bound(beats.begin(), beats.end(), first, isBefore);
         beat != beats.end() && static_cast<double>(beat->m_nSample) < span.Last(); ++beat) {
        double const x = span.XOf(static_cast<double>(beat->m_nSample));
        if (beat->m_nBeat == 1) {
            PaintMeasure(painter, span, *beat, look, colors);
        } else if (look.HasBeats()) {
            PaintLine(painter, x, numbersBottom, bottom, colors.m_beat);
        }
        if (look.HasHalves() && beat + 1 != beats.end()) {
            double const half = static_cast<double>(beat->m_nSample + (beat + 1)->m_nSample) / 2.0;
            PaintLine(painter, span.XOf(half), numbersBottom, numbersBottom + tick, colors.m_beat);
        }
    }
}

void PaintMixPoints(QPainter& painter, CPictureSpan const& span, CSongPicture const& picture,
                    CPictureColors const& colors, double side) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.m_mix);
    double const bottom = span.m_area.bottom();
    auto const paint = [&](std::vector<std::int64_t> const& places, double foot, double tip) {
        for (std::int64_t const place : places) {
            double const x = span.XOf(static_cast<double>(place));
            if (x >= span.m_area.left() - side && x <= span.m_area.right() + side) {
                painter.drawPolygon(
                    QPolygonF({{x - side / 2, foot}, {x + side / 2, foot}, {x, tip}}));
            }
        }
    };
    paint(picture.m_vMixesIn, bottom, bottom - side);
    paint(picture.m_vMixesOut, bottom - side, bottom);
    painter.restore();
}

void PaintFade(QPainter& painter, CPictureSpan const& span, CSongPicture const& picture,
               CPictureColors const& colors) {
    std::size_t const count = picture.m_vFades.size();
    if (count < 2) {
        return;
    }
    QPolygonF line;
    for (std::size_t i = 0; i < count; ++i) {
        double const share = static_cast<double>(i) / static_cast<double>(count - 1);
        line << QPointF(span.XOf(static_cast<double>(picture.m_vFades[i])),
                        span.m_area.top() + share * (span.m_area.height() - 1.0));
    }
    painter.save();
    painter.setClipRect(span.m_area);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colors.m_mix, 1.5, Qt::DashLine));
    painter.drawPolyline(line);
    painter.restore();
}
