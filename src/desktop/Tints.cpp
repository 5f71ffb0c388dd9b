// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Tints.h"

#include "desktop/Numbers.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace {

constexpr double kTextContrast = 4.5; // Standard: WCAG 2.1, success criterion 1.4.3.
constexpr double kSignContrast = 3.0; // Standard: WCAG 2.1, success criterion 1.4.11.
constexpr int kFaintestPercent = 60;  // Fixed: share of the ink in the faintest hint.
constexpr int kNoticePercent = 25;    // Fixed: share of the highlight in a notice's ground.
constexpr int kStepPercent = 5;       // Fixed: from one share to the next.

// Standard: WCAG 2.1, "relative luminance".
double LinearPart(float channel) {
    auto const part = static_cast<double>(channel);
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(QColor const& color) {
    return 0.2126 * LinearPart(color.redF()) + 0.7152 * LinearPart(color.greenF()) +
           0.0722 * LinearPart(color.blueF());
}

QColor Mix(QColor const& ink, QColor const& paper, int inkPercent) {
    auto const part = [inkPercent](int of, int rest) {
        return (of * inkPercent + rest * (kWholePercent - inkPercent)) / kWholePercent;
    };
    return {part(ink.red(), paper.red()), part(ink.green(), paper.green()),
            part(ink.blue(), paper.blue())};
}

QColor BlackOrWhite(QColor const& paper) {
    QColor const black(Qt::black);
    QColor const white(Qt::white);
    return Contrast(black, paper) >= Contrast(white, paper) ? black : white;
}

// The first paper is the one that the ink is mixed with.
QColor FaintestInk(QColor const& ink, std::initializer_list<QColor> papers) {
    for (int percent = kFaintestPercent; percent <= kWholePercent; percent += kStepPercent) {
        QColor const mixed = Mix(ink, *papers.begin(), percent);
        if (std::all_of(papers.begin(), papers.end(), [&](QColor const& paper) {
                return Contrast(mixed, paper) >= kTextContrast;
            })) {
            return mixed;
        }
    }
    return BlackOrWhite(*papers.begin());
}

} // namespace

double Contrast(QColor const& one, QColor const& other) {
    constexpr double kGlare = 0.05; // Standard: WCAG 2.1, "contrast ratio".
    double const a = Luminance(one) + kGlare;
    double const b = Luminance(other) + kGlare;
    return std::max(a, b) / std::min(a, b);
}

QColor HintColor(QColor const& ink, QColor const& paper) {
    return FaintestInk(ink, {paper});
}

QColor HintColor(QPalette const& palette, QPalette::ColorGroup group) {
    QColor const base = palette.color(group, QPalette::Base);
    QColor const ink = palette.color(group, QPalette::Text);
    if (!CanStripeRows(palette, group)) {
        return FaintestInk(ink, {base});
    }
    return FaintestInk(ink, {base, palette.color(group, QPalette::AlternateBase)});
}

bool CanStripeRows(QPalette const& palette, QPalette::ColorGroup group) {
    return Contrast(palette.color(group, QPalette::Text),
                    palette.color(group, QPalette::AlternateBase)) >= kTextContrast;
}

QColor NoticeGround(QPalette const& palette, QPalette::ColorGroup group) {
    QColor const tips = palette.color(group, QPalette::ToolTipBase);
    QColor const window = palette.color(group, QPalette::Window);
    return Contrast(tips, window) < kSignContrast
               ? tips
               : Mix(palette.color(group, QPalette::Highlight), window, kNoticePercent);
}

QColor NoticeInk(QPalette const& palette, QPalette::ColorGroup group) {
    QColor const ground = NoticeGround(palette, group);
    for (auto const role : {QPalette::ToolTipText, QPalette::WindowText}) {
        if (Contrast(palette.color(group, role), ground) >= kTextContrast) {
            return palette.color(group, role);
        }
    }
    return BlackOrWhite(ground);
}

QColor SignColor(QColor const& sign, QColor const& paper) {
    QColor const end = BlackOrWhite(paper);
    for (int percent = kWholePercent; percent > 0; percent -= kStepPercent) {
        QColor const mixed = Mix(sign, end, percent);
        if (Contrast(mixed, paper) >= kSignContrast) {
            return mixed;
        }
    }
    return end;
}
