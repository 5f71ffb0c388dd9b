// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QIcon>
#include <array>

/// The toolbar's signs.
enum class EGlyph { Add, Analyze, Rescan, Stop, Help, Menu };

/// Icons of the six actions, in the order of `EGlyph`. The desktop's icon theme serves them when
/// it has all six in a form that this program can draw; otherwise all six are drawn here, in the
/// palette's text colour, so that the set is never mixed.
/// Thread: main.
std::array<QIcon, 6> ActionIcons();

/// One drawn sign. It follows the palette and the screen's scale each time it is painted.
QIcon DrawnIcon(EGlyph glyph);

/// A warning sign of the same hand, for rows with a problem.
QIcon WarningIcon();

/// A pencil, for tempos that a person has set.
QIcon ByHandIcon();

/// A store that is crossed out, for tempos that aren't in their files.
QIcon NotInFileIcon();

/// The product's picture in the sizes that window managers ask for.
QIcon ProductIcon();
