// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/Jams.h"

#include "export/Json.h"
#include "export/TakenSong.h"
#include "export/TempoMap.h"

#include <array>
#include <cstdint>
#include <vector>

namespace {

constexpr char kJamsVersion[] = "0.3.4"; // Standard: of the schema.
constexpr std::int64_t kBeatUnit = 4;    // Fixed: a beat is written as a quarter.

/// One thing that is said of a stretch of the song, or of a point when that lasts 0 s.
struct CObservation {
    double m_dSeconds;
    double m_dDuration;
    std::string m_sValue;      // JSON
    std::string m_sConfidence; // likewise
};

std::string ObservationJson(CObservation const& observation) {
    return CJsonObject()
        .Add("time", JsonSeconds(observation.m_dSeconds))
        .Add("duration", JsonSeconds(observation.m_dDuration))
        .Add("value", observation.m_sValue)
        .Add("confidence", observation.m_sConfidence)
        .Close();
}

/// The annotations of one song.
class CAnnotations {
public:
    CAnnotations(CTakenSong const& song, std::string const& version)
        : m_song(song), m_sTool("Tactus " + version) {}

    void Add(char const* kind, std::vector<CObservation> const& observations) {
        if (observations.empty()) {
            return;
        }
        m_vAnnotations.push_back(
            CJsonObject()
                .Add("annotation_metadata", CJsonObject()
                                                .Add("annotation_tools", JsonText(m_sTool))
                                                .Add("data_source", JsonText("program"))
                                                .Close())
                .Add("namespace", JsonText(kind))
                .Add("data", JsonArray(observations, ObservationJson))
                .Add("sandbox", "{}")
                .Add("time", "0")
                .Add("duration", JsonSeconds(m_song.m_dSeconds))
                .Close());
    }

    [[nodiscard]] std::string Json() const {
        return JsonArray(m_vAnnotations, [](std::string const& json) { return json; });
    }

private:
    CTakenSong const& m_song;
    std::string m_sTool;
    std::vector<std::string> m_vAnnotations;
};

std::vector<CObservation> TempoOf(CTakenSong const& song) {
    if (!(song.m_dTempo > 0.0)) {
        return {};
    }
    return {{0.0, song.m_dSeconds, JsonSeconds(song.m_dTempo),
             JsonNumber(song.m_candidates.m_fConfidence)}};
}

std::vector<CObservation> BeatsOf(CTakenSong const& song) {
    std::vector<CObservation> beats;
    for (CBeatTime const& beat : WholeBeats(song.m_beats)) {
        beats.push_back({beat.m_dSeconds, 0.0, JsonNumber(std::int64_t{beat.m_nPlace}),
                         JsonNumber(song.m_beats.m_fBeatConfidence)});
    }
    return beats;
}

std::vector<CObservation> PositionsOf(CTakenSong const& song) {
    std::vector<CObservation> positions;
    std::int64_t measure = 0; // what comes before the first downbeat
    for (CBeatTime const& beat : WholeBeats(song.m_beats)) {
        measure += beat.m_nPlace == 1 ? 1 : 0;
        positions.push_back(
            {beat.m_dSeconds, 0.0,
             CJsonObject()
                 .Add("position", JsonNumber(std::int64_t{beat.m_nPlace}))
                 .Add("measure", JsonNumber(measure))
                 .Add("num_beats", JsonNumber(std::int64_t{song.m_beats.m_nBeatsPerMeasure}))
                 .Add("beat_units", JsonNumber(kBeatUnit))
                 .Close(),
             JsonNumber(song.m_beats.m_fDownbeatConfidence)});
    }
    return positions;
}

std::vector<CObservation> KeyOf(CTakenSong const& song) {
    // Standard: namespace key_mode, a tonic and a mode.
    constexpr std::array<char const*, 12> kTonics = {"C",  "C#", "D",  "Eb", "E",  "F",
                                                     "F#", "G",  "Ab", "A",  "Bb", "B"};
    CHarmony const& key = song.m_harmony;
    if (key.m_eMode == EKeyMode::None) {
        return {};
    }
    std::string const tonic = kTonics[static_cast<std::size_t>(key.m_nTonic) % kTonics.size()];
    return {{0.0, song.m_dSeconds,
             JsonText(tonic + (key.m_eMode == EKeyMode::Minor ? ":minor" : ":major")),
             JsonNumber(key.m_fConfidence)}};
}

std::vector<CObservation> SectionsOf(CTakenSong const& song) {
    std::vector<CObservation> sections;
    auto const add = [&](double from, double to, char const* name) {
        if (to > from) {
            sections.push_back({from, to - from, JsonText(name), "null"});
        }
    };
    double const outro = song.m_dOutroStart > 0.0 ? song.m_dOutroStart : song.m_dSeconds;
    add(0.0, song.m_dIntroEnd, "intro");
    add(song.m_dIntroEnd, outro, "body");
    add(outro, song.m_dSeconds, "outro");
    return sections;
}

} // namespace

std::string JamsOf(CTakenSong const& song, std::string const& version) {
    CAnnotations annotations(song, version);
    annotations.Add("tempo", TempoOf(song));
    annotations.Add("beat", BeatsOf(song));
    annotations.Add("beat_position", PositionsOf(song));
    annotations.Add("key_mode", KeyOf(song));
    annotations.Add("segment_open", SectionsOf(song));
    return CJsonObject()
        .Add("file_metadata", CJsonObject()
                                  .Add("title", JsonText(song.m_sTitle))
                                  .Add("artist", JsonText(song.m_sArtist))
                                  .Add("release", JsonText(song.m_sAlbum))
                                  .Add("duration", JsonSeconds(song.m_dSeconds))
                                  .Add("identifiers", "{}")
                                  .Add("jams_version", JsonText(kJamsVersion))
                                  .Close())
        .Add("annotations", annotations.Json())
        .Add("sandbox", CJsonObject().Add("path", JsonText(song.m_sPath)).Close())
        .Close();
}
