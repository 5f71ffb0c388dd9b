// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/PreferencesDialog.h"

#include "desktop/Numbers.h"
#include "desktop/Texts.h"
#include "song/TagTempo.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr double kUsualSlowestBpm = 70.0;  // Fixed: what is offered to somebody without one.
constexpr double kUsualFastestBpm = 180.0; // Fixed: likewise.

QDoubleSpinBox* MakeBpmField(char const* name, double least, double most, QWidget* parent) {
    auto* field = new QDoubleSpinBox(parent);
    field->setObjectName(name);
    field->setDecimals(0);
    field->setRange(least, most);
    return field;
}

} // namespace

CPreferencesDialog::CPreferencesDialog(CState const& state, QWidget* parent) : QDialog(parent) {
    setObjectName("preferences");
    setWindowTitle(tr("Preferences"));
    new QVBoxLayout(this);
    setUpList();
    setUpTempo();
    setUpTags();
    setUpWindow(state);
    setUpButtons();
    showWishes(state.m_wishes, state.m_bRemembersLayout);
}

QVBoxLayout* CPreferencesDialog::addGroup(QString const& title) {
    auto* group = new QGroupBox(title, this);
    layout()->addWidget(group);
    return new QVBoxLayout(group);
}

QCheckBox* CPreferencesDialog::addBox(QVBoxLayout* group, char const* name, QString const& text) {
    auto* box = new QCheckBox(text, this);
    box->setObjectName(name);
    group->addWidget(box);
    return box;
}

void CPreferencesDialog::setUpList() {
    QVBoxLayout* group = addGroup(tr("Files"));
    m_pOtherKinds =
        addBox(group, "otherKinds",
               tr("Add &other kinds too: flac, ogg, opus, wma and all that can be read"));
}

void CPreferencesDialog::setUpTempo() {
    QVBoxLayout* group = addGroup(tr("Tempo, from the next analysis on"));
    auto* line = new QHBoxLayout;
    m_pDecimals = new QComboBox(this);
    m_pDecimals->setObjectName("decimals");
    for (int decimals = kTempoDecimals; decimals >= 0; --decimals) {
        m_pDecimals->addItem(QLocale().toString(128.0, 'f', decimals), decimals);
    }
    auto* label = new QLabel(tr("&Decimals, in the table and in tags:"), this);
    label->setBuddy(m_pDecimals);
    line->addWidget(label);
    line->addWidget(m_pDecimals);
    line->addStretch();
    group->addLayout(line);
    m_pLikely = addBox(group, "likely", tr("Take the &likeliest reading, such as half or double"));
    setUpRange(group);
    m_pZeros =
        addBox(group, "zeros",
               tr("Where there is no tempo, show &zero, and store it when there is no beat"));
}

// The range must hold some octave of every tempo.
void CPreferencesDialog::setUpRange(QVBoxLayout* group) {
    auto* line = new QHBoxLayout;
    m_pRange = new QCheckBox(tr("Halve or double into this &range:"), this);
    m_pRange->setObjectName("range");
    m_pSlowest = MakeBpmField("slowest", kSlowestTagBpm, kFastestTagBpm / 2, this);
    m_pSlowest->setAccessibleName(tr("Slowest tempo"));
    m_pFastest = MakeBpmField("fastest", 2 * kSlowestTagBpm, kFastestTagBpm, this);
    m_pFastest->setAccessibleName(tr("Fastest tempo"));
    line->addWidget(m_pRange);
    line->addWidget(m_pSlowest);
    line->addWidget(new QLabel(QStringLiteral("–"), this));
    line->addWidget(m_pFastest);
    line->addStretch();
    group->addLayout(line);
    connect(m_pSlowest, &QDoubleSpinBox::valueChanged, this,
            [this](double slowest) { m_pFastest->setMinimum(2 * slowest); });
    connect(m_pRange, &QCheckBox::toggled, m_pSlowest, &QWidget::setEnabled);
    connect(m_pRange, &QCheckBox::toggled, m_pFastest, &QWidget::setEnabled);
}

void CPreferencesDialog::setUpTags() {
    QVBoxLayout* group = addGroup(tr("Tags"));
    m_pOnlyLook = addBox(group, "onlyLookBox", tr("Only &look, write nothing"));
    m_pWriteOtherKinds = addBox(group, "writeOtherKinds",
                                tr("&Write other kinds than MP3 too, where that can be done"));
    m_pKeepTime = addBox(group, "keepTime", tr("&Keep the time of a file's last change"));
    for (QCheckBox* box : {m_pWriteOtherKinds, m_pKeepTime}) {
        connect(m_pOnlyLook, &QCheckBox::toggled, box, &QWidget::setDisabled);
    }
}

void CPreferencesDialog::setUpWindow(CState const& state) {
    QVBoxLayout* group = addGroup(tr("Window"));
    m_pRemember = addBox(group, "remember", tr("Re&member its size and columns"));
    auto* stored = new QLabel(this);
    stored->setObjectName("stored");
    stored->setTextFormat(Qt::PlainText);
    stored->setWordWrap(true);
    stored->setTextInteractionFlags(Qt::TextSelectableByMouse);
    stored->setText(state.m_sStored.isEmpty() ? tr("Nothing is stored: everything is as it came.")
                                              : tr("Stored in %1:").arg(Isolated(state.m_sFile)) +
                                                    QLatin1Char('\n') + state.m_sStored);
    layout()->addWidget(stored);
}

void CPreferencesDialog::setUpButtons() {
    auto* buttons = new QDialogButtonBox(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::RestoreDefaults, this);
    layout()->addWidget(buttons);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("OK"));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    buttons->button(QDialogButtonBox::RestoreDefaults)->setText(tr("Restore defaults"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this,
            [this] { showWishes({}, true); });
}

void CPreferencesDialog::showWishes(CWishes const& wishes, bool remembersLayout) {
    bool const hasRange = wishes.m_dSlowest > 0.0;
    m_pOtherKinds->setChecked(wishes.m_bOtherKinds);
    m_pDecimals->setCurrentIndex(m_pDecimals->findData(wishes.m_nDecimals));
    m_pLikely->setChecked(wishes.m_bLikelyOctave);
    m_pRange->setChecked(hasRange);
    m_pSlowest->setValue(hasRange ? wishes.m_dSlowest : kUsualSlowestBpm);
    m_pFastest->setValue(hasRange ? wishes.m_dFastest : kUsualFastestBpm);
    m_pSlowest->setEnabled(hasRange);
    m_pFastest->setEnabled(hasRange);
    m_pZeros->setChecked(wishes.m_bZeros);
    m_pOnlyLook->setChecked(wishes.m_bOnlyLook);
    m_pWriteOtherKinds->setChecked(wishes.m_bWriteOtherKinds);
    m_pKeepTime->setChecked(wishes.m_bKeepTime);
    m_pRemember->setChecked(remembersLayout);
}

CWishes CPreferencesDialog::wishes() const {
    bool const hasRange = m_pRange->isChecked();
    return {.m_bOtherKinds = m_pOtherKinds->isChecked(),
            .m_bWriteOtherKinds = m_pWriteOtherKinds->isChecked(),
            .m_bOnlyLook = m_pOnlyLook->isChecked(),
            .m_bKeepTime = m_pKeepTime->isChecked(),
            .m_bZeros = m_pZeros->isChecked(),
            .m_bLikelyOctave = m_pLikely->isChecked(),
            .m_nDecimals = m_pDecimals->currentData().toInt(),
            .m_dSlowest = hasRange ? m_pSlowest->value() : 0.0,
            .m_dFastest = hasRange ? m_pFastest->value() : 0.0};
}

bool CPreferencesDialog::remembersLayout() const {
    return m_pRemember->isChecked();
}
