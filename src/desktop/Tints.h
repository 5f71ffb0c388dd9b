// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QPalette>

/// Colours that the window works out for itself. A palette may leave the roles for hints unset,
/// or set them to something that nobody can read; text and its ground are always there.
/// Thread: main.

/// Contrast of two opaque colours, 1 to 21 (WCAG 2.1, "contrast ratio").
double Contrast(QColor const& one, QColor const& other);

/// The faintest mix of `ink` and `paper` that still has the contrast of 4.5 to `paper`, but never
/// fainter than three fifths of `ink`. Where not even `ink` has it: black or white.
QColor HintColor(QColor const& ink, QColor const& paper);

/// The same for the table's hints, legible on both of its grounds.
QColor HintColor(QPalette const& palette, QPalette::ColorGroup group = QPalette::Active);

/// Is text legible on the ground of every second row? Some dark palettes leave it light.
bool CanStripeRows(QPalette const& palette, QPalette::ColorGroup group = QPalette::Active);

/// The ground of a notice: that of the palette's tips, but where those are light on a dark window,
/// or dark on a light one, the window's with some of the highlight in it.
QColor NoticeGround(QPalette const& palette, QPalette::ColorGroup group = QPalette::Active);

/// What can be read on that ground: the palette's text of tips or windows, or black or white.
QColor NoticeInk(QPalette const& palette, QPalette::ColorGroup group = QPalette::Active);

/// `sign` darkened or lightened until it has the contrast of 3 to `paper`, which a sign needs.
QColor SignColor(QColor const& sign, QColor const& paper);
