// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Render
//   TakeOrders     what was asked for since the last time
//   RenderPiece    up to the loop's end: music, clicks over it
//   Turn           back to the loop's start

#include "app/Player.h"

#include "base/EngineRate.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace {

constexpr double kClickSeconds = 0.03;   // Fixed: length of a click.
constexpr double kDecaySeconds = 0.006;  // Fixed: time in which it falls to 1/e.
constexpr double kBeatHz = 1000.0;       // Fixed: its tone,
constexpr double kMeasureHz = 1600.0;    // and that of a measure's first.
constexpr std::size_t kMostTurns = 1024; // Fixed: more than a device can hold back.

/// Full at its first frame, so that a beat is where the click begins.
std::vector<float> MakeClick(double hertz, int rate) {
    std::vector<float> click(static_cast<std::size_t>(kClickSeconds * rate));
    for (std::size_t i = 0; i < click.size(); ++i) {
        double const time = static_cast<double>(i) / rate;
        click[i] = static_cast<float>(std::exp(-time / kDecaySeconds) *
                                      std::cos(2.0 * std::numbers::pi * hertz * time));
    }
    return click;
}

} // namespace

CPlayer::CPlayer(std::unique_ptr<IStereoSource> music, CBeatGrid const& grid, int rate)
    : m_pMusic(std::move(music)),
      m_nRate(rate),
      m_vBeatClick(MakeClick(kBeatHz, rate)),
      m_vMeasureClick(MakeClick(kMeasureHz, rate)) {
    for (CBeat const& beat : grid.Beats()) {
        m_vClicks.push_back({FrameOf(beat.m_nSample), beat.m_nBeat == 1});
    }
    m_vTurns.push_back({0, 0});
}

/// Nearest, halves up.
std::int64_t CPlayer::FrameOf(std::int64_t place) const {
    return (2 * place * m_nRate + kEngineRateHz) / (2 * std::int64_t{kEngineRateHz});
}

std::int64_t CPlayer::PlaceOf(std::int64_t frame) const {
    return (2 * frame * kEngineRateHz + m_nRate) / (2 * std::int64_t{m_nRate});
}

void CPlayer::SetLevels(float music, float click) {
    std::scoped_lock const guard(m_lock);
    m_orders.m_fMusic = std::clamp(music, 0.0f, 1.0f);
    m_orders.m_fClick = std::clamp(click, 0.0f, 1.0f);
}

void CPlayer::GoTo(std::int64_t place) {
    std::scoped_lock const guard(m_lock);
    m_orders.m_goTo = FrameOf(std::max<std::int64_t>(place, 0));
}

void CPlayer::SetLoop(std::int64_t from, std::int64_t to) {
    std::scoped_lock const guard(m_lock);
    m_orders.m_nLoopFrom = FrameOf(std::max<std::int64_t>(from, 0));
    m_orders.m_nLoopTo = FrameOf(std::max<std::int64_t>(to, 0));
}

CPlayer::COrders CPlayer::TakeOrders() {
    std::scoped_lock const guard(m_lock);
    COrders const orders = m_orders;
    m_orders.m_goTo.reset();
    return orders;
}

void CPlayer::Turn(std::int64_t frame) {
    (void)m_pMusic->Seek(frame);
    m_nFrame = frame;
    std::scoped_lock const guard(m_lock);
    m_vTurns.push_back({m_nRendered, frame});
    if (m_vTurns.size() > kMostTurns) {
        m_vTurns.pop_front();
    }
}

std::size_t CPlayer::Render(std::span<float> stereo) {
    COrders const orders = TakeOrders();
    std::fill(stereo.begin(), stereo.end(), 0.0f);
    if (orders.m_goTo) {
        Turn(*orders.m_goTo);
    }
    bool const isLoop = orders.m_nLoopFrom < orders.m_nLoopTo;
    std::size_t done = 0;
    bool isStuck = false; // a loop without music in it must not turn for ever
    while (done < stereo.size() && !isStuck) {
        std::size_t const count = RenderPiece(stereo.subspan(done), orders);
        done += count;
        if (isLoop && (count == 0 || m_nFrame == orders.m_nLoopTo)) {
            isStuck = count == 0 && m_nFrame == orders.m_nLoopFrom;
            Turn(orders.m_nLoopFrom);
        } else {
            isStuck = count == 0;
        }
    }
    for (float& sample : stereo) {
        sample = std::clamp(sample, -1.0f, 1.0f);
    }
    return done / 2;
}

/// Returns: samples, up to the end of the loop or of the music.
std::size_t CPlayer::RenderPiece(std::span<float> stereo, COrders const& orders) {
    if (m_nFrame < orders.m_nLoopTo && orders.m_nLoopFrom < orders.m_nLoopTo) {
        auto const left = static_cast<std::uint64_t>(orders.m_nLoopTo - m_nFrame);
        stereo = stereo.first(
            static_cast<std::size_t>(std::min<std::uint64_t>(2 * left, stereo.size())));
    }
    std::size_t const frames = m_pMusic->Read(stereo);
    stereo = stereo.first(2 * frames);
    for (float& sample : stereo) {
        sample *= orders.m_fMusic;
    }
    AddClicks(stereo, orders.m_fClick);
    m_nFrame += static_cast<std::int64_t>(frames);
    m_nRendered += static_cast<std::int64_t>(frames);
    return stereo.size();
}

void CPlayer::AddClicks(std::span<float> stereo, float level) const {
    auto const frames = static_cast<std::int64_t>(stereo.size() / 2);
    auto const length = static_cast<std::int64_t>(m_vBeatClick.size());
    auto const isBefore = [](CClick const& click, std::int64_t frame) {
        return click.m_nFrame < frame;
    };
    for (auto click =
             std::lower_bound(m_vClicks.begin(), m_vClicks.end(), m_nFrame - length + 1, isBefore);
         click != m_vClicks.end() && click->m_nFrame < m_nFrame + frames; ++click) {
        std::vector<float> const& sound = click->m_bAccent ? m_vMeasureClick : m_vBeatClick;
        std::int64_t const first = std::max(click->m_nFrame, m_nFrame);
        std::int64_t const end = std::min(click->m_nFrame + length, m_nFrame + frames);
        for (std::int64_t frame = first; frame < end; ++frame) {
            float const value = level * sound[static_cast<std::size_t>(frame - click->m_nFrame)];
            auto const place = static_cast<std::size_t>(2 * (frame - m_nFrame));
            stereo[place] += value;
            stereo[place + 1] += value;
        }
    }
}

std::int64_t CPlayer::PlaceAt(std::int64_t frames) const {
    std::scoped_lock const guard(m_lock);
    auto turn = m_vTurns.rbegin();
    while (turn + 1 != m_vTurns.rend() && turn->m_nRendered > frames) {
        ++turn;
    }
    return PlaceOf(std::max<std::int64_t>(turn->m_nSong + frames - turn->m_nRendered, 0));
}
