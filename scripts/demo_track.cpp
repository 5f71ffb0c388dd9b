// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Writes a short track of known tempo, so that Tactus can be tried without any music at hand:
// a bass drum on every beat, a hat between, a bass line that moves with each measure.

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr std::uint32_t kSampleRate = 44100;
constexpr double kSeconds = 60.0;

double Sine(double hertz, double seconds) {
    return std::sin(2.0 * std::numbers::pi * hertz * seconds);
}

/// One sample of the track; `noise` in [-1, 1].
double Sample(double beat, double secondsPerBeat, double noise) {
    constexpr std::array<double, 4> kRootsHertz = {55.0, 65.41, 49.0, 58.27}; // A1 C2 G1 B flat 1
    double const sinceBeat = (beat - std::floor(beat)) * secondsPerBeat;
    double const sinceOffbeat = (beat + 0.5 - std::floor(beat + 0.5)) * secondsPerBeat;
    auto const measure = static_cast<std::size_t>(beat / 4.0);
    double const drum = 0.6 * Sine(52.0, sinceBeat) * std::exp(-14.0 * sinceBeat);
    double const click = 0.3 * noise * std::exp(-300.0 * sinceBeat);
    double const hat = 0.15 * noise * std::exp(-70.0 * sinceOffbeat);
    double const bass = 0.2 * Sine(kRootsHertz[measure % kRootsHertz.size()], sinceBeat) *
                        std::exp(-3.0 * sinceBeat);
    return drum + click + hat + bass;
}

void AppendNumber(std::vector<std::uint8_t>* bytes, std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) {
        bytes->push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

void AppendText(std::vector<std::uint8_t>* bytes, std::string const& text) {
    bytes->insert(bytes->end(), text.begin(), text.end());
}

/// A WAV file: 16 bits, mono.
std::vector<std::uint8_t> MakeTrack(double bpm) {
    auto const count = static_cast<std::uint32_t>(kSeconds * kSampleRate);
    std::vector<std::uint8_t> bytes;
    AppendText(&bytes, "RIFF");
    AppendNumber(&bytes, 36 + 2 * count, 4);
    AppendText(&bytes, "WAVEfmt ");
    AppendNumber(&bytes, 16, 4);
    AppendNumber(&bytes, 1, 2); // PCM
    AppendNumber(&bytes, 1, 2); // channels
    AppendNumber(&bytes, kSampleRate, 4);
    AppendNumber(&bytes, 2 * kSampleRate, 4);
    AppendNumber(&bytes, 2, 2);
    AppendNumber(&bytes, 16, 2);
    AppendText(&bytes, "data");
    AppendNumber(&bytes, 2 * count, 4);
    std::uint32_t seed = 1;
    for (std::uint32_t i = 0; i < count; ++i) {
        seed = seed * 1664525U + 1013904223U;
        double const noise = static_cast<double>(static_cast<std::int32_t>(seed)) / 2147483648.0;
        double const seconds = static_cast<double>(i) / kSampleRate;
        double const sample = Sample(seconds * bpm / 60.0, 60.0 / bpm, noise);
        auto const value = static_cast<std::int32_t>(std::lround(sample * 32767.0 * 0.8));
        AppendNumber(&bytes, static_cast<std::uint32_t>(value), 2);
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    double const bpm = argc == 3 ? std::atof(argv[2]) : 0.0;
    if (bpm < 20.0 || bpm > 400.0) {
        std::fprintf(stderr, "usage: tactus-demo-track FILE.wav BPM\n");
        return 2;
    }
    std::vector<std::uint8_t> const bytes = MakeTrack(bpm);
    std::FILE* const file = std::fopen(argv[1], "wb");
    bool const written =
        file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    if (file == nullptr || std::fclose(file) != 0 || !written) {
        std::fprintf(stderr, "%s: can't be written\n", argv[1]);
        return 1;
    }
    return 0;
}
