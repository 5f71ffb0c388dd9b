// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PictureAccess.h"

#include "desktop/PaneTexts.h"
#include "desktop/PictureView.h"

#include <QAccessibleWidget>

namespace {

class CAccessiblePicture : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit CAccessiblePicture(CPictureView* view)
        : QAccessibleWidget(view, QAccessible::Slider), m_pView(view) {}

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text which) const override {
        CSongPicture const* picture = m_pView->picture();
        if (which == QAccessible::Value) {
            return picture == nullptr ? QString() : MusicalPlaceText(*picture, m_pView->place());
        }
        if (which == QAccessible::Description && picture != nullptr) {
            return PictureText(*picture);
        }
        return QAccessibleWidget::text(which);
    }

    QVariant currentValue() const override { return static_cast<qlonglong>(m_pView->place()); }
    void setCurrentValue(QVariant const& value) override {
        emit m_pView->placeChosen(value.toLongLong());
    }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override {
        CSongPicture const* picture = m_pView->picture();
        return static_cast<qlonglong>(picture == nullptr ? 0 : picture->m_nSamples);
    }
    QVariant minimumStepSize() const override { return 1; }

private:
    CPictureView* m_pView;
};

QAccessibleInterface* MakePicture(QString const&, QObject* object) {
    auto* view = qobject_cast<CPictureView*>(object);
    return view != nullptr ? new CAccessiblePicture(view) : nullptr;
}

} // namespace

void InstallPictureAccess() {
    QAccessible::installFactory(MakePicture); // Once more does no harm.
}
