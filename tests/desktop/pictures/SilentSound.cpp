// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The part that plays, for machines without a device: it takes sound and makes none, so that the
// window shows what belongs to playing.

#include "desktop/SoundOutput.h"

#include <array>
#include <cstddef>

namespace {

constexpr std::size_t kSilentSamples = 1024; // Fixed: of a block.

class CSilentSound : public ISoundOutput {
public:
    [[nodiscard]] int rate() const override { return 44100; }
    bool start(Render render) override {
        std::array<float, kSilentSamples> block{};
        (void)render(block); // one block is taken, so that the player knows where it is
        return true;
    }
    void stop() override {}
    [[nodiscard]] std::int64_t heardFrames() const override { return 0; }
    [[nodiscard]] bool hasEnded() const override { return false; }
};

} // namespace

extern "C" __attribute__((visibility("default"))) ISoundOutput*
TactusMakeSoundOutput(char const* /*version*/) {
    return new CSilentSound;
}
