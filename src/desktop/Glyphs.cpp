// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Every sign is a path on a grid of 24 by 24 units, stroked or filled with one colour.

#include "desktop/Glyphs.h"

#include "desktop/Tints.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPen>
#include <algorithm>
#include <functional>

namespace {

constexpr qreal kGridUnits = 24.0;                // Fixed: side of the drawing grid.
constexpr qreal kStrokeUnits = 1.75;              // Fixed: width of every line, in grid units.
constexpr QColor kWarningColor(0xD9, 0x8E, 0x04); // Fixed: amber.

using PaintProc = std::function<void(QPainter&, QIcon::Mode)>;

/// An icon that is painted anew at every size and in every state.
class CPaintedIconEngine : public QIconEngine {
public:
    explicit CPaintedIconEngine(PaintProc proc) : m_paint(std::move(proc)) {}

    void paint(QPainter* painter, QRect const& area, QIcon::Mode mode, QIcon::State) override {
        qreal const side = std::min(area.width(), area.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(QRectF(area).center() - QPointF(side / 2, side / 2));
        painter->scale(side / kGridUnits, side / kGridUnits);
        m_paint(*painter, mode);
        painter->restore();
    }

    QPixmap pixmap(QSize const& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new CPaintedIconEngine(m_paint); }

private:
    PaintProc m_paint;
};

QPainterPath AddPath() {
    QPainterPath path;
    path.moveTo(12, 5);
    path.lineTo(12, 19);
    path.moveTo(5, 12);
    path.lineTo(19, 12);
    return path;
}

QPainterPath AnalyzePath() {
    QPainterPath path;
    path.moveTo(7.5, 5);
    path.lineTo(18.5, 12);
    path.lineTo(7.5, 19);
    path.closeSubpath();
    return path;
}

QPainterPath RescanPath() {
    QPainterPath path;
    path.arcMoveTo(5, 5, 14, 14, 55);
    path.arcTo(5, 5, 14, 14, 55, 290);
    QPointF const tip(19.2, 6.0);
    path.moveTo(tip + QPointF(0, -2.5));
    path.lineTo(tip + QPointF(0, 3.2));
    path.lineTo(tip + QPointF(-5.7, 3.2));
    return path;
}

QPainterPath StopPath() {
    QPainterPath path;
    path.addRoundedRect(6, 6, 12, 12, 1.5, 1.5);
    return path;
}

QPainterPath HelpPath() {
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 8.5, 8.5);
    path.moveTo(9.3, 9.6);
    path.cubicTo(9.5, 6.6, 14.7, 6.6, 14.7, 9.8);
    path.cubicTo(14.7, 11.8, 12, 11.8, 12, 14.0);
    path.moveTo(12, 16.6);
    path.lineTo(12, 16.7);
    return path;
}

QPainterPath MenuPath() {
    QPainterPath path;
    for (int const height : {7, 12, 17}) {
        path.moveTo(5, height);
        path.lineTo(19, height);
    }
    return path;
}

QPainterPath GlyphPath(EGlyph glyph) {
    switch (glyph) {
    case EGlyph::Add:
        return AddPath();
    case EGlyph::Analyze:
        return AnalyzePath();
    case EGlyph::Rescan:
        return RescanPath();
    case EGlyph::Stop:
        return StopPath();
    case EGlyph::Menu:
        return MenuPath();
    case EGlyph::Help:
        break;
    }
    return HelpPath();
}

QPen RoundPen(QColor const& color) {
    return {color, kStrokeUnits, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void PaintWarning(QPainter& painter, QIcon::Mode mode) {
    QPalette const palette = QGuiApplication::palette();
    QColor const color = mode == QIcon::Selected
                             ? palette.color(QPalette::HighlightedText)
                             : SignColor(kWarningColor, palette.color(QPalette::Base));
    QPainterPath path;
    path.moveTo(12, 4.5);
    path.lineTo(20.5, 19);
    path.lineTo(3.5, 19);
    path.closeSubpath();
    path.moveTo(12, 10);
    path.lineTo(12, 13.6);
    path.moveTo(12, 16.2);
    path.lineTo(12, 16.3);
    painter.strokePath(path, RoundPen(color));
}

QPainterPath PencilPath() {
    QPainterPath path;
    path.moveTo(4.5, 19.5);
    path.lineTo(5.7, 14.8);
    path.lineTo(15.6, 4.9);
    path.lineTo(19.1, 8.4);
    path.lineTo(9.2, 18.3);
    path.closeSubpath();
    path.moveTo(13.2, 7.3);
    path.lineTo(16.7, 10.8);
    return path;
}

QPainterPath CrossedStorePath() {
    QPainterPath path;
    path.addEllipse(QPointF(12, 6.5), 6.5, 2.5);
    path.moveTo(5.5, 6.5);
    path.lineTo(5.5, 17.5);
    path.cubicTo(5.5, 20.8, 18.5, 20.8, 18.5, 17.5);
    path.lineTo(18.5, 6.5);
    path.moveTo(3, 21);
    path.lineTo(21, 3);
    return path;
}

/// A sign in the colour of the table's texts.
QIcon TableSign(QPainterPath const& path) {
    return QIcon(new CPaintedIconEngine([path](QPainter& painter, QIcon::Mode mode) {
        QPalette::ColorRole const role =
            mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::Text;
        painter.strokePath(path, RoundPen(QGuiApplication::palette().color(role)));
    }));
}

/// A theme may list an icon that can't be drawn, as a scalable one without its plug-in.
bool CanBeDrawn(QIcon const& icon) {
    constexpr int kProbePixels = 16;
    return !icon.isNull() && !icon.pixmap(kProbePixels).isNull();
}

} // namespace

QIcon DrawnIcon(EGlyph glyph) {
    return QIcon(new CPaintedIconEngine([glyph](QPainter& painter, QIcon::Mode mode) {
        auto const group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QColor const color = QGuiApplication::palette().color(group, QPalette::ButtonText);
        painter.strokePath(GlyphPath(glyph), RoundPen(color));
    }));
}

QIcon WarningIcon() {
    return QIcon(new CPaintedIconEngine(PaintWarning));
}

QIcon ByHandIcon() {
    return TableSign(PencilPath());
}

QIcon NotInFileIcon() {
    return TableSign(CrossedStorePath());
}

std::array<QIcon, 6> ActionIcons() {
    std::array<QIcon, 6> icons{
        QIcon::fromTheme("list-add"),      QIcon::fromTheme("media-playback-start"),
        QIcon::fromTheme("view-refresh"),  QIcon::fromTheme("media-playback-stop"),
        QIcon::fromTheme("help-contents"), QIcon::fromTheme("application-menu")};
    if (!std::all_of(icons.begin(), icons.end(), CanBeDrawn)) {
        icons = {DrawnIcon(EGlyph::Add),  DrawnIcon(EGlyph::Analyze), DrawnIcon(EGlyph::Rescan),
                 DrawnIcon(EGlyph::Stop), DrawnIcon(EGlyph::Help),    DrawnIcon(EGlyph::Menu)};
    }
    return icons;
}

QIcon ProductIcon() {
    QIcon icon;
    for (int const side : {16, 24, 32, 48, 64, 128, 256}) {
        icon.addFile(QString(":/icons/tactus-desktop-%1.png").arg(side));
    }
    return icon;
}
