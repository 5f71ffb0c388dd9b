// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BeatGrid.h"
#include "platform/StereoSource.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

/// What is heard of a song at which frame of a device: its music, and a click on every beat that
/// begins on the very frame of the beat, higher where a measure starts. It knows no device.
/// Units: places in samples at the engine's rate; frames at the device's.
/// Thread: `Render` on one thread, everything else on any.
class CPlayer {
public:
    /// `rate`: frames a second of the device. Starts at the song's beginning.
    CPlayer(std::unique_ptr<IStereoSource> music, CBeatGrid const& grid, int rate);

    /// Levels from 0 to 1.
    void SetLevels(float music, float click);

    /// Goes to `place`.
    void GoTo(std::int64_t place);

    /// Repeats what lies in [from, to) once the end of it is reached; nothing that is empty.
    void SetLoop(std::int64_t from, std::int64_t to);

    /// Fills `stereo`, whose length is even. Returns: frames, fewer at the song's end only; what is
    /// left of `stereo` is silent.
    std::size_t Render(std::span<float> stereo);

    /// The place that is heard when `frames` frames of all that was rendered have been.
    [[nodiscard]] std::int64_t PlaceAt(std::int64_t frames) const;

private:
    struct CClick {
        std::int64_t m_nFrame;
        bool m_bAccent;
    };
    /// What is asked for from outside.
    struct COrders {
        float m_fMusic = 1.0f;
        float m_fClick = 0.5f;
        std::int64_t m_nLoopFrom = 0;
        std::int64_t m_nLoopTo = 0;
        std::optional<std::int64_t> m_goTo;
    };
    /// From which rendered frame on which frame of the song was rendered.
    struct CTurn {
        std::int64_t m_nRendered;
        std::int64_t m_nSong;
    };

    [[nodiscard]] std::int64_t FrameOf(std::int64_t place) const;
    [[nodiscard]] std::int64_t PlaceOf(std::int64_t frame) const;
    COrders TakeOrders();
    void Turn(std::int64_t frame);
    std::size_t RenderPiece(std::span<float> stereo, COrders const& orders);
    void AddClicks(std::span<float> stereo, float level) const;

    std::unique_ptr<IStereoSource> m_pMusic;
    int m_nRate;
    std::vector<CClick> m_vClicks;
    std::vector<float> m_vBeatClick;
    std::vector<float> m_vMeasureClick;
    std::int64_t m_nFrame = 0; // of the song, to be rendered next
    std::int64_t m_nRendered = 0;

    mutable std::mutex m_lock; // Guards the two members below.
    COrders m_orders;
    std::deque<CTurn> m_vTurns;
};
