// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Prints what the tempo model sees, for its trainer: reads what `tactus profile --trace` prints,
// one song a line, and writes a line each: name, seconds, the readings with their features, and the
// features of the song for every reading as if it came first with a score of 0. JSON both ways;
// nine digits give a float back to the bit.

#include "engine/beats/BeatPattern.h"
#include "engine/envelope/PcmThumbnail.h"
#include "song/TempoFeatures.h"

#include <array>
#include <charconv>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

namespace {

using Json = nlohmann::json;

constexpr std::uint32_t kRate = 44100;  // of the engine's stages
constexpr std::uint16_t kElement = 256; // samples of an envelope's element

CPfPcmThumbnail EnvelopeOf(Json const& values) {
    CPfPcmThumbnail envelope;
    auto const count = static_cast<std::int64_t>(values.size());
    (void)envelope.Initialize(count * kElement, kRate, kElement);
    for (std::int32_t i = 0; i < envelope.GetCount(); ++i) {
        Json const& value = values[static_cast<std::size_t>(i)];
        envelope.SetAt(i, value.is_number() ? value.get<float>() : 0.0f);
    }
    return envelope;
}

CPfBeatPattern PatternOf(Json const& values) {
    CPfBeatPattern pattern;
    pattern.Initialize(static_cast<std::int32_t>(values.size()));
    for (std::size_t i = 0; i < values.size(); ++i) {
        pattern.SetBeatWeight(static_cast<std::int32_t>(i),
                              values[i].is_number() ? values[i].get<float>() : 0.0f);
    }
    return pattern;
}

std::string Text(float value) {
    std::array<char, 32> text{};
    auto const end =
        std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::general, 9);
    return {text.data(), end.ptr};
}

void Print(std::vector<float> const& values) {
    char const* separator = "[";
    for (float const value : values) {
        std::cout << separator << Text(value);
        separator = ",";
    }
    std::cout << "]";
}

void PrintReadings(CTempoSource const& source, CTempoEvidence const& evidence) {
    char const* separator = "";
    for (CTempoReading const& reading : ListReadings(source, evidence)) {
        std::cout << separator << "{\"bpm\":" << Text(reading.m_fBpm)
                  << ",\"times\":" << reading.m_nTimes << ",\"over\":" << reading.m_nOver
                  << ",\"rank\":" << reading.m_nRank << ",\"features\":";
        Print(ReadingFeatures(source, evidence, reading));
        std::cout << ",\"song\":";
        Print(SongFeatures(evidence, {reading.m_fBpm, 0, 0, 0.0f}));
        std::cout << "}";
        separator = ",";
    }
}

float Number(Json const& value) {
    return value.is_number() ? value.get<float>() : 0.0f;
}

void PrintSong(Json const& trace) {
    CPfPcmThumbnail const energy = EnvelopeOf(trace["energy"]);
    CPfPcmThumbnail const bass = EnvelopeOf(trace["bass"]);
    CPfBeatPattern const energyPattern = PatternOf(trace["beatPatternA"]);
    CPfBeatPattern const bassPattern = PatternOf(trace["beatPatternB"]);
    CTempoSource const source{&energy,
                              &bass,
                              &energyPattern,
                              &bassPattern,
                              Number(trace["bpm"]),
                              Number(trace["foldedBpm"])};
    CTempoEvidence const evidence = GatherTempoEvidence(source);
    bool const heard = source.m_fReportedBpm > 0.0f && !evidence.m_energy.m_vValues.empty();
    std::cout << "{\"file\":" << trace["file"] << ",\"reported\":" << Text(source.m_fReportedBpm)
              << ",\"readings\":[";
    if (heard) {
        PrintReadings(source, evidence);
    }
    std::cout << "]}\n";
}

} // namespace

int main() {
    std::string line;
    while (std::getline(std::cin, line)) {
        Json const trace = Json::parse(line, nullptr, false);
        if (!trace.is_object() || !trace.contains("foldedBpm")) {
            std::cerr << "tactus-tempo-features: a line is not a trace of tactus profile\n";
            return 1;
        }
        PrintSong(trace);
    }
    return 0;
}
