// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>

/// The device that sound comes out of. It is served by a part of its own, which is looked for when
/// the program runs, so that the window works without it.
/// Units: frames of two samples, left first; samples in [-1, 1].
/// Thread: main; `Render` is called there too.
class ISoundOutput {
public:
    /// Fills a block. Returns: frames, fewer than the block has at the end only.
    using Render = std::function<std::size_t(std::span<float>)>;

    virtual ~ISoundOutput() = default;

    /// Frames a second; 0 when there is no device.
    [[nodiscard]] virtual int rate() const = 0;

    /// Plays what `render` gives, until it ends or `stop`. Returns: false when the device refuses.
    virtual bool start(Render render) = 0;

    virtual void stop() = 0;

    /// Frames that were heard since `start`, as far as the device tells what it holds back.
    [[nodiscard]] virtual std::int64_t heardFrames() const = 0;

    /// All that was rendered has been heard, and there is no more.
    [[nodiscard]] virtual bool hasEnded() const = 0;
};

/// Why nothing can be played.
enum class ESoundProblem { None, NoPart, NoDevice };

struct CSoundChoice {
    std::unique_ptr<ISoundOutput> m_pOutput; // null with a problem
    ESoundProblem m_problem = ESoundProblem::None;
};

/// Looks for the part beside the program, then where it is installed.
CSoundChoice FindSoundOutput();
