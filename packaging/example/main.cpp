// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Prints the tempo of one file.

#include <cstdio>
#include <engine/PcmReader.h>
#include <engine/ProfileBuilder.h>
#include <engine/ProfileResults.h>
#include <engine/Profiler.h>
#include <platform/AudioDecoder.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: tempo FILE\n");
        return 2;
    }
    CAudioDecoder decoder;
    CDecodedAudio audio;
    if (decoder.Decode(argv[1], audio) != kStatusOk) {
        std::fprintf(stderr, "%s: can't be decoded (%d)\n", argv[1],
                     static_cast<int>(decoder.GetReport().m_problem));
        return 1;
    }
    CPcmReader reader(audio.Samples().data(), audio.m_nCount);
    CProfiler progress(nullptr);
    CProfileResults results;
    CProfileBuilder().BuildProfile(&progress, &reader, &results, nullptr, nullptr);
    std::printf("%.2f\n", static_cast<double>(results.GetBpm()));
    return 0;
}
