// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/ProfileJson.h"

#include "base/Utf16.h"
#include "cli/ProfileTrace.h"
#include "engine/ProfileResults.h"
#include "engine/notes/KeyDetector.h"
#include "engine/print/Fingerprint.h"
#include "export/FileUri.h"
#include "export/Json.h"
#include "song/KeyCodes.h"

#include <array>
#include <cstdint>
#include <span>

namespace {

std::string Integers(std::span<std::int64_t const> values) {
    return JsonArray(values, [](std::int64_t value) { return JsonNumber(value); });
}

std::string Floats(std::span<float const> values) {
    return JsonArray(values, [](float value) { return JsonNumber(value); });
}

std::string MaybeFloat(std::optional<float> value) {
    return value ? JsonNumber(*value) : "null";
}

std::string KeyName(std::size_t tonic, bool isMinor) {
    constexpr std::array<char const*, kPitchClasses> kTonics = {"C",  "C#", "D",  "D#", "E",  "F",
                                                                "F#", "G",  "G#", "A",  "A#", "B"};
    return JsonText(std::string(kTonics[tonic % kPitchClasses]) + (isMinor ? " minor" : " major"));
}

std::string KeyJson(CProfileResults const& results) {
    std::uint16_t tonic = 0;
    std::uint16_t mode = 0;
    results.GetKey(&tonic, &mode);
    std::string name = "null";
    if (mode == CPfKeyDetector::kMinor || mode == CPfKeyDetector::kMajor) {
        name = KeyName(tonic, mode == CPfKeyDetector::kMinor);
    }
    return CJsonObject()
        .Add("tonic", JsonNumber(std::int64_t{tonic}))
        .Add("mode", JsonNumber(std::int64_t{mode}))
        .Add("name", name)
        .Close();
}

std::string HarmonyJson(CHarmony const& harmony) {
    if (harmony.m_eMode == EKeyMode::None) {
        return "null";
    }
    return CJsonObject()
        .Add("name", KeyName(static_cast<std::size_t>(harmony.m_nTonic),
                             harmony.m_eMode == EKeyMode::Minor))
        .Add("camelot", JsonText(CamelotCode(harmony)))
        .Add("openKey", JsonText(OpenKeyCode(harmony)))
        .Add("confidence", JsonNumber(harmony.m_fConfidence))
        .Add("tuningCents", JsonNumber(harmony.m_fTuningCents))
        .Close();
}

std::string PrintJson(CFingerprint const& print) {
    return CJsonObject()
        .Add("time", JsonNumber(print.GetTime()))
        .Add("min", JsonNumber(print.GetMin()))
        .Add("max", JsonNumber(print.GetMax()))
        .Add("values", Floats(print.GetValues()))
        .Close();
}

void AddResults(CJsonObject& object, CProfileResults const& results) {
    CPfBeatPattern patternA;
    CPfBeatPattern patternB;
    results.GetBeatPatterns(&patternA, &patternB);
    object.Add("bpm", JsonNumber(results.GetBpm()))
        .Add("key", KeyJson(results))
        .Add("sampleRate", JsonNumber(std::int64_t{results.GetSampleRate()}))
        .Add("sampleCount", JsonNumber(results.GetSampleCount()))
        .Add("bitRate", JsonNumber(std::int64_t{results.GetBitRate()}))
        .Add("peakLevel", JsonNumber(results.GetPeakLevel()))
        .Add("introEnd", JsonNumber(results.GetIntroEnd()))
        .Add("outroStart", JsonNumber(results.GetOutroStart()))
        .Add("introFadePoints", Integers(results.GetIntroFadePoints()))
        .Add("introSprockets", Integers(results.GetIntroSprockets()))
        .Add("outroSprockets", Integers(results.GetOutroSprockets()))
        .Add("measureMarks", Integers(results.GetMeasMarks()))
        .Add("beatPatternA", Floats(patternA.GetWeights()))
        .Add("beatPatternB", Floats(patternB.GetWeights()));
}

void AddTrace(CJsonObject& object, CProfileTrace const& trace) {
    object.Add("baseBpm", MaybeFloat(trace.m_baseBpm))
        .Add("foldedBpm", MaybeFloat(trace.m_foldedBpm))
        .Add("shortClipBpm", MaybeFloat(trace.m_shortClipBpm))
        .Add("beats", Integers(trace.m_vBeats))
        .Add("impactPoints", Integers(trace.m_vImpactPoints))
        .Add("classicPoints", Integers(trace.m_vClassicPoints))
        .Add("energy", Floats(trace.m_vEnergy))
        .Add("bass", Floats(trace.m_vBass))
        .Add("noteCount", CJsonObject()
                              .Add("found", JsonNumber(std::int64_t{trace.m_nNotesFound}))
                              .Add("kept", JsonNumber(std::int64_t{trace.m_nNotesKept}))
                              .Close());
}

} // namespace

std::string ProfileJson(CProfile const& profile) {
    CJsonObject object;
    object.Add("file", JsonText(profile.m_sFile));
    if (!IsUtf8(profile.m_sFile)) {
        object.Add("uri", JsonText(FileUri(profile.m_sFile)));
    }
    AddResults(object, *profile.m_pResults);
    object.Add("fingerprint", PrintJson(*profile.m_pPrint))
        .Add("largePrint", PrintJson(*profile.m_pLargePrint))
        .Add("progress", JsonArray(profile.m_vProgress,
                                   [](int percent) { return JsonNumber(std::int64_t{percent}); }));
    if (profile.m_harmony) {
        object.Add("harmony", HarmonyJson(*profile.m_harmony));
    }
    AddTrace(object, *profile.m_pTrace);
    return object.Close();
}
