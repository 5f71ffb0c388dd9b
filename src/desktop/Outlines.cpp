// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Outlines.h"

#include "desktop/Tints.h"

#include <QApplication>
#include <QEvent>
#include <QStyle>

namespace {

/// A class of controls, and how much lighter than its edge Fusion wants the window.
struct CControl {
    char const* m_pName = nullptr;
    int m_nPercent = 0;
};

constexpr int kEdgePercent = 150;   // Derived: Fusion's edges are 1.4 to 1.5 times as dark.
constexpr int kCirclePercent = 200; // Tuned: OutlinesTest; circles are smoothed, and fainter so.
constexpr CControl kControls[] = {{"QRadioButton", kCirclePercent},
                                  {"QCheckBox", kEdgePercent},
                                  {"QLineEdit", kEdgePercent},
                                  {"QComboBox", kEdgePercent},
                                  {"QPushButton", kEdgePercent},
                                  {"QToolButton", kEdgePercent},
                                  {"QAbstractSpinBox", kEdgePercent},
                                  {"QSlider", kEdgePercent},
                                  {"QMenu", kEdgePercent}};

bool IsDark(QColor const& window) {
    return Contrast(window, Qt::white) > Contrast(window, Qt::black);
}

} // namespace

COutlines::COutlines() {
    qApp->installEventFilter(this);
    apply();
}

COutlines::~COutlines() {
    forget();
}

bool COutlines::eventFilter(QObject* object, QEvent* event) {
    if (object == qApp && !m_bApplying && event->type() == QEvent::ApplicationPaletteChange) {
        apply();
    }
    return QObject::eventFilter(object, event);
}

void COutlines::apply() {
    QColor const window = QApplication::palette().color(QPalette::Window);
    bool const isFusion = QApplication::style()->name().compare("fusion", Qt::CaseInsensitive) == 0;
    if (!isFusion || !IsDark(window)) {
        return; // the program's palette has just ended those of the classes
    }
    m_bApplying = true;
    for (CControl const& control : kControls) {
        QPalette own;
        own.setColor(QPalette::Window, SignColor(window, window).lighter(control.m_nPercent));
        // What is disabled in a menu has a lower edge of this colour.
        own.setColor(QPalette::Light, window);
        QApplication::setPalette(own, control.m_pName);
    }
    m_bApplying = false;
}

void COutlines::forget() {
    m_bApplying = true;
    for (CControl const& control : kControls) {
        QApplication::setPalette({}, control.m_pName);
    }
    m_bApplying = false;
}
