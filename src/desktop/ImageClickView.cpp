// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/ImageClickView.h"

#include "desktop/Glyphs.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOption>

namespace {

constexpr int kSidePixels = 30;  // Fixed: side of the view, in device-independent pixels.
constexpr int kMarginPixels = 3; // Fixed: room for the focus frame around the picture.

/// What a screen reader sees: a button.
class CAccessibleImage : public QAccessibleWidget {
public:
    explicit CAccessibleImage(QxImageClickView* view)
        : QAccessibleWidget(view, QAccessible::Button) {}

    QStringList actionNames() const override {
        return QStringList{pressAction()} + QAccessibleWidget::actionNames();
    }

    void doAction(QString const& name) override {
        if (name == pressAction()) {
            emit static_cast<QxImageClickView*>(object())->clicked();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }
};

QAccessibleInterface* MakeClickable(QString const&, QObject* object) {
    auto* view = qobject_cast<QxImageClickView*>(object);
    return view != nullptr ? new CAccessibleImage(view) : nullptr;
}

} // namespace

QxImageClickView::QxImageClickView(QWidget* parent) : QWidget(parent) {
    QAccessible::installFactory(MakeClickable); // Once more does no harm.
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize QxImageClickView::sizeHint() const {
    return {kSidePixels, kSidePixels};
}

// A third click in a row comes as a press of its own; it still belongs to the double click.
void QxImageClickView::mousePressEvent(QMouseEvent* event) {
    event->accept();
    bool const continued = m_sinceDoubleClick.isValid() &&
                           !m_sinceDoubleClick.hasExpired(QApplication::doubleClickInterval());
    if (continued || event->button() != Qt::LeftButton) {
        return;
    }
    emit clicked();
}

void QxImageClickView::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
    m_sinceDoubleClick.start();
}

void QxImageClickView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
        emit clicked();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void QxImageClickView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    ProductIcon().paint(
        &painter, rect().adjusted(kMarginPixels, kMarginPixels, -kMarginPixels, -kMarginPixels));
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}
