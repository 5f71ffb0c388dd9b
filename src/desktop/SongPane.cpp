// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SongPane.h"

#include "desktop/AccentsView.h"
#include "desktop/ElidedLabel.h"
#include "desktop/Glyphs.h"
#include "desktop/Margins.h"
#include "desktop/Numbers.h"
#include "desktop/PaneTexts.h"
#include "desktop/PictureView.h"
#include "desktop/SoundControls.h"
#include "desktop/TempoLine.h"
#include "desktop/Texts.h"
#include "song/SongTags.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLabel>
#include <QStackedLayout>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace {

constexpr int kPaneMarginY = 5; // Fixed: pixels above and below.
constexpr int kLineGap = 4;     // Fixed: pixels from line to line.
constexpr int kFootGap = 18;    // Fixed: pixels from one thing in the last line to the next.

QLabel* MakeLabel(QWidget* parent, char const* name) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    return label;
}

QString ProblemOf(CSongPicture const& picture) {
    CRowState row;
    row.m_outcome = picture.m_outcome;
    return ProblemText(row);
}

} // namespace

CSongPane::CSongPane(IPictureSource& source, CSoundChoice sound, QWidget* parent)
    : QWidget(parent),
      m_pStack(new QStackedLayout(this)),
      m_pMessage(MakeLabel(this, "paneMessage")),
      m_sound(std::move(sound)),
      m_loader(source) {
    setObjectName("songPane");
    setAccessibleName(tr("Song"));
    m_pMessage->setAlignment(Qt::AlignCenter);
    m_pMessage->setWordWrap(true);
    m_pMessage->setMargin(kTextMarginX);
    m_pStack->addWidget(m_pMessage);
    m_pStack->addWidget(makePage());
    setUpSound();
    connect(this, &CSongPane::arrived, this, &CSongPane::take, Qt::QueuedConnection);
    connect(
        this, &CSongPane::tagRead, this,
        [this](std::uint64_t request, QString const& tempo) {
            if (request == m_nTagRequest) {
                m_pTag->setText(TagText(tempo));
            }
        },
        Qt::QueuedConnection);
    setSong(std::nullopt);
}

QWidget* CSongPane::makePage() {
    auto* page = new QWidget(this);
    setUpHead(*page);
    m_pBar = new CSongBar(page);
    m_pBar->setAccessibleName(tr("Whole song"));
    m_pStrip = new CBeatStrip(page);
    m_pStrip->setAccessibleName(tr("Some measures"));
    m_pTempo = MakeLabel(page, "paneTempo");
    m_pTag = new CElidedLabel(Qt::ElideRight, page);
    m_pTag->setObjectName("paneTag");
    m_pAccentsA = new CAccentsView(tr("Accents A"), page);
    m_pAccentsB = new CAccentsView(tr("B"), page);
    auto* foot = new QHBoxLayout;
    foot->setSpacing(kFootGap);
    m_pControls = new CSoundControls(page);
    auto* tempos = new QVBoxLayout; // what was found over what is in the tag
    tempos->setSpacing(0);
    tempos->addWidget(m_pTempo);
    tempos->addWidget(m_pTag);
    foot->addLayout(tempos, 1);
    foot->addWidget(m_pControls);
    foot->addWidget(m_pAccentsA);
    foot->addWidget(m_pAccentsB);
    m_pTempoLine = new CTempoLine(page);
    connect(m_pTempoLine, &CTempoLine::tempoChosen, this, &CSongPane::tempoChosen);
    auto* lines = static_cast<QVBoxLayout*>(page->layout());
    lines->addWidget(m_pBar);
    lines->addWidget(m_pStrip, 1);
    lines->addWidget(m_pTempoLine);
    lines->addLayout(foot);
    for (CPictureView* view :
         {static_cast<CPictureView*>(m_pBar), static_cast<CPictureView*>(m_pStrip)}) {
        connect(view, &CPictureView::placeChosen, this, [this](std::int64_t sample) {
            goTo(sample, false);
            m_sound.goTo(place());
        });
    }
    connect(m_pStrip, &CBeatStrip::spanChanged, this, [this] {
        CPictureSpan const shown = m_pStrip->span();
        m_pBar->setFrame(shown.m_dFirst, shown.Last());
    });
    return page;
}

void CSongPane::setUpHead(QWidget& page) {
    m_pPlay = new QToolButton(&page);
    m_pPlay->setObjectName("panePlay");
    m_pPlay->setAutoRaise(true);
    m_pPlace = MakeLabel(&page, "panePlace");
    m_pTitle = new CElidedLabel(Qt::ElideRight, &page);
    m_pTitle->setObjectName("paneTitle");
    m_pFacts = MakeLabel(&page, "paneFacts");
    auto* head = new QHBoxLayout;
    head->addWidget(m_pPlay);
    head->addWidget(m_pPlace);
    head->addWidget(m_pTitle, 1);
    head->addWidget(m_pFacts);
    auto* lines = new QVBoxLayout(&page);
    lines->setContentsMargins(kTextMarginX, kPaneMarginY, kTextMarginX, kPaneMarginY);
    lines->setSpacing(kLineGap);
    lines->addLayout(head);
    setTitleFont();
}

void CSongPane::setUpSound() {
    bool const canPlay = m_sound.problem() == ESoundProblem::None;
    QString const keys = ShortcutText(QKeySequence(Qt::Key_Space));
    QString const why = m_sound.problem() == ESoundProblem::NoDevice
                            ? tr("There is no device to play on.")
                            : tr("Playing needs the package tactus-desktop-sound.");
    m_pPlay->setEnabled(canPlay);
    m_pPlay->setToolTip(canPlay ? tr("Play with clicks on the beats (%1)").arg(keys) : why);
    m_pPlay->setAccessibleDescription(canPlay ? QString() : why);
    m_pControls->setVisible(canPlay);
    connect(m_pPlay, &QToolButton::clicked, this, &CSongPane::togglePlaying);
    connect(m_pControls, &CSoundControls::levelsChosen, &m_sound, &CSongSound::setLevels);
    connect(m_pControls, &CSoundControls::loopChosen, &m_sound, &CSongSound::setLoop);
    connect(&m_sound, &CSongSound::placeHeard, this,
            [this](std::int64_t sample) { goTo(sample, false); });
    connect(&m_sound, &CSongSound::playingChanged, this, &CSongPane::showPlaying);
    showPlaying();
}

void CSongPane::togglePlaying() {
    if (m_sound.isPlaying()) {
        m_sound.stop();
    } else if (m_pShown != nullptr) {
        (void)m_sound.play(m_song->m_sPath, m_pShown, place());
    }
}

void CSongPane::showPlaying() {
    bool const isPlaying = m_sound.isPlaying();
    m_pPlay->setIcon(DrawnIcon(isPlaying ? EGlyph::Stop : EGlyph::Analyze));
    m_pPlay->setAccessibleName(isPlaying ? tr("Stop playing") : tr("Play"));
}

void CSongPane::setTitleFont() {
    QFont font = this->font();
    font.setWeight(QFont::DemiBold);
    m_pTitle->setFont(font);
}

QSize CSongPane::sizeHint() const {
    return m_pStack->widget(1)->sizeHint();
}

void CSongPane::setSong(std::optional<CPaneSong> song) {
    if (song && song == m_song) {
        return;
    }
    m_sound.stop();
    m_song = std::move(song);
    std::uint64_t const request = ++m_nRequest;
    if (!m_song) {
        m_loader.Cancel();
        showMessage(tr("Select a song to see it here."));
        return;
    }
    showMessage(tr("Reading “%1” …").arg(Isolated(m_song->m_sTitle)));
    m_pTag->clear();
    readTag();
    m_loader.Load(m_song->m_sPath, [this, request](CSongPicturePtr const& picture) {
        emit arrived(request, picture);
    });
}

void CSongPane::setTagSigns(CTagSigns const& signs) {
    if (signs != m_signs) {
        m_signs = signs;
        readTag();
    }
}

// What is asked for next makes the one before needless.
void CSongPane::readTag() {
    std::uint64_t const request = ++m_nTagRequest;
    if (m_song) {
        (void)m_tags.Post([this, request, path = m_song->m_sPath] {
            if (request == m_nTagRequest) {
                std::string const tempo = ReadShownTags(CString::FromPath(path)).m_sTempo;
                emit tagRead(request, TempoText(QString::fromStdString(tempo).toStdU16String()));
            }
        });
    }
}

// One that was on its way when another song was chosen comes too late.
void CSongPane::take(std::uint64_t request, CSongPicturePtr const& picture) {
    if (request != m_nRequest) {
        return;
    }
    if (!picture->IsHeard() || picture->m_nSamples <= 0) {
        QString const problem = ProblemOf(*picture);
        showMessage(problem.isEmpty() ? tr("There is no sound in it.") : problem);
    } else {
        showPicture(picture);
    }
    emit settled();
}

void CSongPane::showMessage(QString const& text) {
    m_pMessage->setText(text);
    m_pStack->setCurrentIndex(0);
    m_pShown.reset();
    m_pBar->setPicture(nullptr);
    m_pStrip->setPicture(nullptr);
}

void CSongPane::showPicture(CSongPicturePtr const& picture) {
    m_pTitle->setText(m_song->m_sArtist.isEmpty() ? m_song->m_sTitle
                                                  : tr("%1 – %2").arg(Isolated(m_song->m_sTitle),
                                                                      Isolated(m_song->m_sArtist)));
    m_pFacts->setText(FactsText(*picture));
    m_pTempo->setText(TempoLineText(*picture));
    m_pAccentsA->setAccents(picture->m_fAccentsA);
    m_pAccentsB->setAccents(picture->m_fAccentsB);
    m_pTempoLine->setCandidates(picture->m_vCandidates);
    m_pTempoLine->setTempo(m_dTempo);
    m_pBar->setPicture(picture);
    m_pStrip->setPicture(picture);
    m_pShown = picture;
    m_pStack->setCurrentIndex(1);
    showPlace();
}

// Not by a focus proxy: Tab would go to that one first and leave out what stands before it.
void CSongPane::takeFocus() {
    m_pStrip->setFocus(Qt::ShortcutFocusReason);
}

void CSongPane::setTempo(double bpm) {
    m_dTempo = bpm;
    m_pTempoLine->setTempo(bpm);
}

CSongPicture const* CSongPane::picture() const {
    return m_pStrip->picture();
}

std::int64_t CSongPane::place() const {
    return m_pStrip->place();
}

void CSongPane::goTo(std::int64_t sample, bool isTold) {
    if (picture() == nullptr) {
        return;
    }
    std::int64_t const held = std::clamp<std::int64_t>(sample, 0, picture()->m_nSamples - 1);
    m_pBar->setPlace(held, isTold && m_pBar->hasFocus());
    m_pStrip->setPlace(held, isTold && m_pStrip->hasFocus());
    showPlace();
}

void CSongPane::goOn(std::optional<CBeat> const& beat) {
    if (beat) {
        goTo(beat->m_nSample, true);
        m_sound.goTo(place());
    }
}

void CSongPane::showPlace() {
    m_pPlace->setText(PlaceText(place()));
}

void CSongPane::keyPressEvent(QKeyEvent* event) {
    CSongPicture const* shown = picture();
    bool const isMeasure = event->modifiers() == Qt::ControlModifier;
    bool const isPlain = event->modifiers() == Qt::NoModifier;
    if (shown == nullptr || !(isMeasure || isPlain)) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        goOn(isMeasure ? shown->m_grid.StepMeasures(place(), -1) : shown->m_grid.Step(place(), -1));
        break;
    case Qt::Key_Right:
        goOn(isMeasure ? shown->m_grid.StepMeasures(place(), 1) : shown->m_grid.Step(place(), 1));
        break;
    case Qt::Key_Home:
        goTo(0, true);
        m_sound.goTo(place());
        break;
    case Qt::Key_End:
        goTo(shown->m_nSamples - 1, true);
        m_sound.goTo(place());
        break;
    case Qt::Key_Space:
        togglePlaying();
        break;
    case Qt::Key_T:
        if (isPlain && !event->isAutoRepeat()) {
            m_pTempoLine->tap(event->timestamp());
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!m_pTempoLine->takeTapped()) {
            QWidget::keyPressEvent(event);
        }
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void CSongPane::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && m_pTitle != nullptr) {
        setTitleFont();
    }
}
