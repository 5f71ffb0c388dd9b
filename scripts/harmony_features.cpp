// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Prints what the harmony model sees, for its trainer: reads one song from standard input, 32-bit
// floats, mono at 44100 Hz, and writes a line of JSON under the name that is given. Nine digits
// give a float back to the bit.

#include "song/Harmony.h"

#include <array>
#include <charconv>
#include <iostream>
#include <span>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kBlock = 65536; // samples

std::string Text(float value) {
    std::array<char, 32> text{};
    auto const end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 9);
    return {text.data(), end.ptr};
}

void Print(char const* name, std::span<float const> values) {
    std::cout << ",\"" << name << "\":";
    char const* separator = "[";
    for (float const value : values) {
        std::cout << separator << Text(value);
        separator = ",";
    }
    std::cout << "]";
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: tactus-harmony-features NAME < SAMPLES\n";
        return 2;
    }
    CHarmonyEar ear;
    std::vector<float> block(kBlock);
    do {
        std::cin.read(reinterpret_cast<char*>(block.data()),
                      static_cast<std::streamsize>(block.size() * sizeof(float)));
        ear.Add(
            std::span(block).first(static_cast<std::size_t>(std::cin.gcount()) / sizeof(float)));
    } while (std::cin);
    CHarmony const harmony = ear.Finish();
    CToneShares const shares = ear.Chroma().Shares();
    std::cout << "{\"file\":\"" << argv[1] << "\",\"mode\":" << static_cast<int>(harmony.m_eMode)
              << ",\"tonic\":" << harmony.m_nTonic
              << ",\"confidence\":" << Text(harmony.m_fConfidence)
              << ",\"cents\":" << Text(harmony.m_fTuningCents)
              << ",\"clarity\":" << Text(ear.Chroma().TuningClarity());
    Print("low", shares.m_low);
    Print("middle", shares.m_middle);
    Print("high", shares.m_high);
    Print("bass", shares.m_bass);
    Print("triads", shares.m_triads);
    std::cout << "}\n";
    return 0;
}
