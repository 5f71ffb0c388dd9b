// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/NoticeBar.h"

#include "desktop/Margins.h"
#include "desktop/Tints.h"

#include <QAccessibleWidget>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kMostChoices = 2; // Fixed: a bar is no dialogue.
constexpr int kNoticeMarginY = 4;       // Fixed: pixels.

/// What a screen reader sees: an alert with the sentence as its name.
class CAccessibleNotice : public QAccessibleWidget {
public:
    explicit CAccessibleNotice(CNoticeBar* bar)
        : QAccessibleWidget(bar, QAccessible::AlertMessage) {}
};

QAccessibleInterface* MakeNotice(QString const&, QObject* object) {
    auto* bar = qobject_cast<CNoticeBar*>(object);
    return bar != nullptr ? new CAccessibleNotice(bar) : nullptr;
}

} // namespace

CNoticeBar::CNoticeBar(QWidget* parent)
    : QFrame(parent), m_pSign(new QLabel(this)), m_pText(new QLabel(this)) {
    QAccessible::installFactory(MakeNotice); // Once more does no harm.
    setObjectName("noticeBar");
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(kTextMarginX, kNoticeMarginY, kTextMarginX, kNoticeMarginY);
    m_pText->setObjectName("noticeText");
    m_pText->setTextFormat(Qt::PlainText);
    m_pText->setWordWrap(true);
    m_pText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(m_pSign);
    layout->addWidget(m_pText, 1);
    for (std::size_t choice = 0; choice < kMostChoices; ++choice) {
        auto* button = new QPushButton(this);
        button->setObjectName(QString("noticeButton%1").arg(choice));
        connect(button, &QPushButton::clicked, this, [this, choice] { press(choice); });
        layout->addWidget(button, 0, Qt::AlignTop);
        m_vButtons.push_back(button);
    }
    tint();
    hide();
}

/// The desktop's own colours of tips, if they go with its windows.
void CNoticeBar::tint() {
    QPalette const all = QApplication::palette();
    QPalette own;
    for (auto const group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        own.setColor(group, QPalette::ToolTipBase, NoticeGround(all, group));
        own.setColor(group, QPalette::ToolTipText, NoticeInk(all, group));
    }
    setPalette(own);
}

void CNoticeBar::changeEvent(QEvent* event) {
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        tint();
    }
}

void CNoticeBar::post(CNotice notice) {
    remove(notice.m_about);
    m_vNotices.push_back(std::move(notice));
    showLatest();
}

void CNoticeBar::withdraw(ENotice about) {
    if (has(about)) {
        remove(about);
        showLatest();
    }
}

bool CNoticeBar::has(ENotice about) const {
    return std::any_of(m_vNotices.begin(), m_vNotices.end(),
                       [about](CNotice const& notice) { return notice.m_about == about; });
}

void CNoticeBar::remove(ENotice about) {
    std::erase_if(m_vNotices, [about](CNotice const& notice) { return notice.m_about == about; });
}

void CNoticeBar::showLatest() {
    if (m_vNotices.empty()) {
        bool const hadFocus = isAncestorOf(QApplication::focusWidget());
        hide();
        if (hadFocus) {
            emit focusLeft();
        }
        return;
    }
    CNotice const& notice = m_vNotices.back();
    int const side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_pSign->setPixmap(
        style()->standardIcon(QStyle::SP_MessageBoxInformation, nullptr, this).pixmap(side));
    m_pText->setText(notice.m_sText);
    setAccessibleName(notice.m_sText);
    showButtons(notice);
    show();
    announce();
}

void CNoticeBar::showButtons(CNotice const& notice) {
    for (std::size_t i = 0; i < m_vButtons.size(); ++i) {
        bool const isWanted = i < notice.m_vChoices.size();
        m_vButtons[i]->setVisible(isWanted);
        m_vButtons[i]->setText(isWanted ? notice.m_vChoices[i].m_sText : QString());
    }
}

// The notice goes first: what the button does may bring the next one.
void CNoticeBar::press(std::size_t choice) {
    if (m_vNotices.empty() || choice >= m_vNotices.back().m_vChoices.size()) {
        return;
    }
    CNotice const notice = std::exchange(m_vNotices.back(), {});
    m_vNotices.pop_back();
    showLatest();
    if (notice.m_vChoices[choice].m_act) {
        notice.m_vChoices[choice].m_act();
    }
}

void CNoticeBar::focusLastButton() {
    for (auto button = m_vButtons.rbegin(); button != m_vButtons.rend(); ++button) {
        if ((*button)->isVisible()) {
            (*button)->setFocus();
            return;
        }
    }
}

void CNoticeBar::announce() {
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
