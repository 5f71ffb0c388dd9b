// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <cstddef>
#include <optional>
#include <string>

/// Numbers as the user writes them: digits, decimal point and groups of the locale, all of them or
/// none.
/// Thread: main.

constexpr int kTempoDecimals = 2; // Fixed: of a tempo in the table.
constexpr int kWholePercent = 100;

/// A tempo of the list for the screen. Only plain numbers change; anything else, such as "ca.
/// 128.5", stays as it is.
QString TempoText(std::u16string const& tempo);

/// The number in a tempo text, as the list reads it; NaN when there is none above 0.
double TempoValue(std::u16string const& tempo);

/// Whether two tempos are the same in the list, with its two decimals. One that was rounded,
/// doubled and rounded again may be one hundredth off.
bool AreSameTempo(double bpm, double other);

/// The text with plain digits and a plain point in place of other ones, such as the locale's.
QString WithPlainDigits(QString const& text);

/// The tempo that a person typed: digits of the locale or plain ones, with comma, point or the
/// locale's own before the decimals, blanks around it ignored. Returns: nothing for any other text,
/// and for a number outside 20 to 999.
std::optional<double> TypedTempo(QString const& text);

/// A percentage with room for two digits, as the list writes it.
QString PercentText(int percent);

/// A share of 1 in percent, rounded, without the sign for it.
QString ShareText(float share);

/// A count, with groups where the locale has them.
QString CountText(std::size_t count);

/// A count as the translation takes it for its plural.
int AsCount(std::size_t count);

/// A tempo that bounds others, without decimals.
QString LimitText(double bpm);

/// Where the decimal point stands in a text of `TempoText`; its size where there is none; -1 for a
/// text that is no plain number.
qsizetype DecimalPointIn(QString const& tempo);
