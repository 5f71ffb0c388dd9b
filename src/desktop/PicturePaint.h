// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SongPicture.h"

#include <QColor>
#include <QPainter>
#include <QPalette>
#include <QRectF>

/// Paints parts of a song's picture. Time goes from left to right in every language.
/// Thread: main.

/// Colours of a picture, legible whatever the palette leaves unset.
struct CPictureColors {
    explicit CPictureColors(QPalette const& palette);

    QColor m_ground;
    QColor m_shade;   // ground of intro and outro
    QColor m_energy;  // what stands on the middle line
    QColor m_bass;    // what hangs from it
    QColor m_beat;    // lines of beats
    QColor m_measure; // lines of measures, and their numbers
    QColor m_mix;     // mix points and the fade
    QColor m_place;   // where one is
};

/// The part of a song that an area shows.
/// Units: samples at the engine's rate; pixels of the widget.
struct CPictureSpan {
    [[nodiscard]] double XOf(double sample) const {
        return m_area.left() + (sample - m_dFirst) / m_dSamplesPerPixel;
    }
    [[nodiscard]] double SampleAt(double x) const {
        return m_dFirst + (x - m_area.left()) * m_dSamplesPerPixel;
    }
    [[nodiscard]] double Last() const { return SampleAt(m_area.right()); }

    QRectF m_area;
    double m_dFirst = 0.0; // at the left edge
    double m_dSamplesPerPixel = 1.0;
};

/// The ground, darker or lighter before the intro's end and behind the outro's start.
void PaintGround(QPainter& painter, CPictureSpan const& span, CSongPicture const& picture,
                 CPictureColors const& colors);

/// What is to be seen best: passages that are quiet, or attacks.
enum class EHeights { QuietRaised, PeaksRaised };

/// Energy standing on a line at two thirds of the height, bass hanging from it.
void PaintEnvelopes(QPainter& painter, CPictureSpan const& span, CSongPicture const& picture,
                    CPictureColors const& colors, EHeights heights);

/// Lines of measures with their numbers, which stand above `numbersBottom`, of beats and of half
/// beats, as many as there is room for.
void PaintGrid(QPainter& painter, CPictureSpan const& span, double numbersBottom,
               CSongPicture const& picture, CPictureColors const& colors);

/// Marks of the mix points along the lower edge, `side` pixels wide: those into the song point
/// upwards, those out of it downwards.
void PaintMixPoints(QPainter& painter, CPictureSpan const& span, CSongPicture const& picture,
                    CPictureColors const& colors, double side);

/// The level of the song before, from full at the first fade point to none at the last.
void PaintFade(QPainter& painter, CPictureSpan const& span, CSongPicture const& picture,
               CPictureColors const& colors);
