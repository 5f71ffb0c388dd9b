// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Numbers.h"

#include "app/Correction.h"
#include "desktop/Texts.h"
#include "song/TempoText.h"

#include <QLocale>
#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kSameBpm = 0.0151; // Derived: the last decimal and half of it, and a little.
constexpr int kPercentDigits = 2;   // Fixed: of a percentage, filled up with blanks in front.

bool IsPlainDigit(QChar letter) {
    return letter >= QLatin1Char('0') && letter <= QLatin1Char('9');
}

/// "128" and "128.05", but neither ".5" nor "128." nor "1e5".
bool IsPlainNumber(QString const& text) {
    qsizetype const points = text.count(QLatin1Char('.'));
    return points <= 1 && !text.isEmpty() && IsPlainDigit(text.front()) &&
           IsPlainDigit(text.back()) && std::all_of(text.begin(), text.end(), [](QChar letter) {
               return IsPlainDigit(letter) || letter == QLatin1Char('.');
           });
}

// The digits of a locale follow its zero, which some write with two code units.
QString InLocalDigits(QString const& number) {
    QLocale const locale;
    QString const zero = locale.zeroDigit();
    QString text;
    for (QChar const letter : number) {
        if (letter == QLatin1Char('.')) {
            text += locale.decimalPoint();
        } else if (IsPlainDigit(letter)) {
            QString digit = zero;
            digit.back() = QChar(digit.back().unicode() + letter.unicode() - u'0');
            text += digit;
        } else {
            text += letter;
        }
    }
    return text;
}

} // namespace

QString TempoText(std::u16string const& tempo) {
    QString const text = ReadableText(tempo);
    return IsPlainNumber(text) ? InLocalDigits(text) : text;
}

double TempoValue(std::u16string const& tempo) {
    double const value = LeadingNumber(CString(tempo));
    return value > 0.0 ? value : std::numeric_limits<double>::quiet_NaN();
}

bool AreSameTempo(double bpm, double other) {
    return std::abs(bpm - other) < kSameBpm;
}

QString WithPlainDigits(QString const& text) {
    QString plain;
    for (char32_t const letter : text.toStdU32String()) {
        bool const isPoint = letter == U',' || letter == U'.' || letter == U'\u066B' ||
                             QString::fromUcs4(&letter, 1) == QLocale().decimalPoint();
        plain += isPoint                  ? QStringLiteral(".")
                 : QChar::isDigit(letter) ? QString::number(QChar::digitValue(letter))
                                          : QString::fromUcs4(&letter, 1);
    }
    return plain;
}

std::optional<double> TypedTempo(QString const& text) {
    QString const plain = WithPlainDigits(text.trimmed());
    double const bpm = IsPlainNumber(plain) ? plain.toDouble() : 0.0;
    return IsTempoInRange(bpm) ? std::optional(bpm) : std::nullopt;
}

QString PercentText(int percent) {
    return InLocalDigits(QString("%1").arg(percent, kPercentDigits)) + QLocale().percent();
}

QString ShareText(float share) {
    return QLocale().toString(
        static_cast<int>(std::lround(share * static_cast<float>(kWholePercent))));
}

int AsCount(std::size_t count) {
    return static_cast<int>(count);
}

QString CountText(std::size_t count) {
    return QLocale().toString(static_cast<qulonglong>(count));
}

QString LimitText(double bpm) {
    return QLocale().toString(bpm, 'f', 0);
}

qsizetype DecimalPointIn(QString const& tempo) {
    QLocale const locale;
    qsizetype const point = tempo.indexOf(locale.decimalPoint());
    bool const isNumber = !tempo.isEmpty() && std::all_of(tempo.begin(), tempo.end(), [&](QChar c) {
        return c.isDigit() || c.isSurrogate() || locale.decimalPoint().contains(c);
    });
    if (!isNumber) {
        return -1;
    }
    return point < 0 ? tempo.size() : point;
}
