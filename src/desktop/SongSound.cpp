// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SongSound.h"

#include "platform/StereoReader.h"

#include <optional>
#include <utility>

namespace {

constexpr int kTellMs = 33; // Fixed: the place moves thirty times a second.

} // namespace

CSongSound::CSongSound(CSoundChoice choice, QObject* parent)
    : QObject(parent), m_choice(std::move(choice)) {
    m_timer.setInterval(kTellMs);
    connect(&m_timer, &QTimer::timeout, this, &CSongSound::tell);
}

CSongSound::~CSongSound() {
    if (m_choice.m_pOutput != nullptr) {
        m_choice.m_pOutput->stop(); // before the player that it asks
    }
}

bool CSongSound::play(std::string const& path, CSongPicturePtr picture, std::int64_t place) {
    stop();
    if (m_choice.m_pOutput == nullptr) {
        return false;
    }
    int const rate = m_choice.m_pOutput->rate();
    auto reader = std::make_unique<CStereoReader>(rate);
    if (reader->Open(path) != EDecodeProblem::None) {
        return false;
    }
    m_pPicture = std::move(picture);
    m_pPlayer = std::make_unique<CPlayer>(std::move(reader), m_pPicture->m_grid, rate);
    m_pPlayer->SetLevels(m_fMusic, m_fClick);
    m_pPlayer->GoTo(place);
    placeLoop(place);
    bool const isStarted = m_choice.m_pOutput->start(
        [player = m_pPlayer.get()](std::span<float> block) { return player->Render(block); });
    if (!isStarted) {
        stop();
        return false;
    }
    m_timer.start();
    emit playingChanged();
    return true;
}

void CSongSound::stop() {
    if (m_pPlayer != nullptr) {
        m_timer.stop();
        m_choice.m_pOutput->stop();
        m_pPlayer.reset();
        m_pPicture.reset();
        emit playingChanged();
    }
}

void CSongSound::goTo(std::int64_t place) {
    if (m_pPlayer != nullptr) {
        placeLoop(place);
        m_pPlayer->GoTo(place);
    }
}

void CSongSound::setLevels(float music, float click) {
    m_fMusic = music;
    m_fClick = click;
    if (m_pPlayer != nullptr) {
        m_pPlayer->SetLevels(music, click);
    }
}

void CSongSound::setLoop(int measures) {
    m_nLoop = measures;
    if (m_pPlayer != nullptr) {
        placeLoop(m_pPlayer->PlaceAt(m_choice.m_pOutput->heardFrames()));
    }
}

void CSongSound::placeLoop(std::int64_t place) {
    std::optional<CBeat> const from = m_pPicture->m_grid.StepMeasures(place + 1, -1);
    if (m_nLoop == 0 || !from) {
        m_pPlayer->SetLoop(0, 0);
        return;
    }
    std::optional<CBeat> const to = m_pPicture->m_grid.StepMeasures(from->m_nSample, m_nLoop);
    m_pPlayer->SetLoop(from->m_nSample, to ? to->m_nSample : m_pPicture->m_nSamples);
}

void CSongSound::tell() {
    emit placeHeard(m_pPlayer->PlaceAt(m_choice.m_pOutput->heardFrames()));
    if (m_pPlayer != nullptr && m_choice.m_pOutput->hasEnded()) {
        stop();
    }
}
