// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/PictureSource.h"
#include "app/Player.h"
#include "desktop/SoundOutput.h"

#include <QObject>
#include <QTimer>
#include <cstdint>
#include <memory>
#include <string>

/// Plays the song of the pane with clicks on its beats, and tells where it is. Nothing runs while
/// nothing is played.
/// Units: places in samples at the engine's rate.
/// Thread: main.
class CSongSound : public QObject {
    Q_OBJECT

public:
    explicit CSongSound(CSoundChoice choice, QObject* parent = nullptr);
    ~CSongSound() override;

    /// Why nothing can be played.
    [[nodiscard]] ESoundProblem problem() const { return m_choice.m_problem; }
    [[nodiscard]] bool isPlaying() const { return m_pPlayer != nullptr; }

    /// Plays the file at `path`, which is bytes, from `place` on. Returns: false when it can't.
    bool play(std::string const& path, CSongPicturePtr picture, std::int64_t place);
    void stop();

    /// Goes on playing from `place`, if anything is played. A loop begins in its measure.
    void goTo(std::int64_t place);

    /// Levels from 0 to 1; they are kept from song to song.
    void setLevels(float music, float click);

    /// Repeats so many measures, from the one on that is heard; 0 for none.
    void setLoop(int measures);

signals:
    void placeHeard(std::int64_t place);

    /// Playing has begun or ended.
    void playingChanged();

private:
    void tell();
    void placeLoop(std::int64_t place);

    CSoundChoice m_choice;
    CSongPicturePtr m_pPicture;
    std::unique_ptr<CPlayer> m_pPlayer;
    QTimer m_timer;
    float m_fMusic = 1.0f;
    float m_fClick = 0.5f;
    int m_nLoop = 0; // measures
};
