// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/EmptyHint.h"

#include "desktop/Tints.h"

#include <QKeySequence>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr qreal kTitleScale = 1.4; // Fixed: size of the first line.

} // namespace

CEmptyHint::CEmptyHint(QWidget* parent)
    : QWidget(parent),
      m_pTitle(new QLabel(this)),
      m_pWay(new QLabel(tr("Drop files and folders here, or"), this)),
      m_pKinds(
          new QLabel(tr("wav, mp3, aiff, aif, caf and m4a; only mp3 files are written"), this)),
      m_pAdd(new QPushButton(tr("Add music …"), this)) {
    m_pTitle->setObjectName("emptyHint");
    m_pWay->setObjectName("emptyWay");
    m_pAdd->setObjectName("emptyAdd");
    QString const keys = QKeySequence(QKeySequence::Open).toString(QKeySequence::NativeText);
    m_pAdd->setToolTip(keys);
    auto* layout = new QVBoxLayout(this);
    layout->addStretch();
    for (QLabel* label : {m_pTitle, m_pWay}) {
        layout->addWidget(label);
    }
    layout->addWidget(m_pAdd, 0, Qt::AlignHCenter);
    layout->addWidget(m_pKinds);
    layout->addStretch();
    for (QLabel* label : {m_pTitle, m_pWay, m_pKinds}) {
        label->setAlignment(Qt::AlignCenter);
        label->setForegroundRole(QPalette::WindowText); // Not that of the table around.
        label->setWordWrap(true);
    }
    QFont font = m_pTitle->font();
    font.setPointSizeF(font.pointSizeF() * kTitleScale);
    m_pTitle->setFont(font);
    connect(m_pAdd, &QPushButton::clicked, this, &CEmptyHint::addRequested);
    setFiltered(false);
}

void CEmptyHint::setColors(QPalette const& palette) {
    QPalette own = palette;
    for (auto const group : {QPalette::Active, QPalette::Inactive}) {
        own.setColor(group, QPalette::WindowText, HintColor(palette, group));
    }
    m_pWay->setPalette(own);
    m_pKinds->setPalette(own);
    for (auto const group : {QPalette::Active, QPalette::Inactive}) {
        own.setColor(group, QPalette::WindowText, palette.color(group, QPalette::Text));
    }
    m_pTitle->setPalette(own);
}

void CEmptyHint::setFiltered(bool isFiltered) {
    m_pTitle->setText(isFiltered ? tr("Nothing here")
                                 : tr("Finds the tempo of music and writes it into MP3 tags"));
    for (QWidget* part : std::initializer_list<QWidget*>{m_pWay, m_pAdd, m_pKinds}) {
        part->setVisible(!isFiltered);
    }
}

QString CEmptyHint::text() const {
    return m_pWay->isHidden()
               ? m_pTitle->text()
               : QString("%1. %2 %3 (%4).")
                     .arg(m_pTitle->text(), m_pWay->text(), m_pAdd->text(), m_pKinds->text());
}
