// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/EmptyHint.h"

#include "desktop/Texts.h"
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
      m_pKinds(new QLabel(this)),
      m_pAdd(new QPushButton(tr("Add music …"), this)),
      m_pOnlyLook(new QPushButton(tr("Only look, write nothing …"), this)) {
    m_pTitle->setObjectName("emptyHint");
    m_pWay->setObjectName("emptyWay");
    m_pAdd->setObjectName("emptyAdd");
    m_pAdd->setToolTip(ShortcutText(QKeySequence(QKeySequence::Open)));
    m_pOnlyLook->setObjectName("emptyOnlyLook");
    m_pOnlyLook->setToolTip(tr("Add music, and change no file until the window is closed"));
    auto* layout = new QVBoxLayout(this);
    layout->addStretch();
    for (QLabel* label : {m_pTitle, m_pWay}) {
        layout->addWidget(label);
    }
    layout->addWidget(m_pAdd, 0, Qt::AlignHCenter);
    layout->addWidget(m_pOnlyLook, 0, Qt::AlignHCenter);
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
    connect(m_pOnlyLook, &QPushButton::clicked, this, &CEmptyHint::onlyLookRequested);
    showTexts();
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
    m_bFiltered = isFiltered;
    showTexts();
}

void CEmptyHint::setWishes(CWishes const& wishes) {
    m_wishes = wishes;
    showTexts();
}

void CEmptyHint::showTexts() {
    QString const kinds = m_wishes.m_bOtherKinds ? tr("every kind of music file")
                                                 : tr("wav, mp3, aiff, aif, caf and m4a");
    QString title = tr("Finds the tempo of music and writes it into MP3 tags");
    QString written = tr("only mp3 files are written");
    if (m_wishes.m_bOnlyLook) {
        title = tr("Finds the tempo of music");
        written = tr("nothing is written");
    } else if (m_wishes.m_bWriteOtherKinds) {
        title = tr("Finds the tempo of music and writes it into the tags");
        written = tr("other kinds than mp3 are written too");
    }
    m_pTitle->setText(m_bFiltered ? tr("Nothing here") : title);
    m_pKinds->setText(WithSemicolons({kinds, written}));
    for (QWidget* part : std::initializer_list<QWidget*>{m_pWay, m_pAdd, m_pKinds}) {
        part->setVisible(!m_bFiltered);
    }
    m_pOnlyLook->setVisible(!m_bFiltered && !m_wishes.m_bOnlyLook);
}

QString CEmptyHint::text() const {
    return m_pWay->isHidden()
               ? m_pTitle->text()
               : QString("%1. %2 %3 (%4).")
                     .arg(m_pTitle->text(), m_pWay->text(), m_pAdd->text(), m_pKinds->text());
}
