// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// SongJson   goes through kFields in their order
//   each     makes its field's JSON text; an empty one leaves the field out

#include "export/SongJson.h"

#include "base/EngineRate.h"
#include "base/Utf16.h"
#include "export/FileUri.h"
#include "export/Json.h"
#include "export/ProblemName.h"
#include "export/TakenSong.h"
#include "song/KeyCodes.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr char kSchema[] = "tactus-song-1";
constexpr char kStandardInput[] = "-"; // Standard: POSIX, guideline 13.

std::string TextOrNull(std::string const& text) {
    return text.empty() ? "null" : JsonText(text);
}

std::string TempoOrNull(double bpm) {
    return bpm > 0.0 ? JsonShortest(static_cast<float>(bpm)) : "null";
}

/// What is 0 is not known.
std::string CountOrNull(std::int64_t count) {
    return count > 0 ? JsonNumber(count) : "null";
}

std::string Seconds(double seconds) {
    return JsonSeconds(seconds);
}

std::string ListOf(std::vector<double> const& seconds) {
    return JsonArray(seconds, Seconds);
}

std::string ListOf(std::vector<std::int64_t> const& samples) {
    return JsonArray(samples, [](std::int64_t value) { return JsonNumber(value); });
}

std::string ListOf(std::vector<float> const& values) {
    return JsonArray(values, [](float value) { return JsonShortest(value); });
}

std::string ListOf(std::vector<std::uint8_t> const& levels) {
    return JsonArray(levels, [](std::uint8_t level) { return JsonNumber(std::int64_t{level}); });
}

std::string Uri(CTakenSong const& song) {
    bool const isPlain = song.m_sPath == kStandardInput || IsUtf8(song.m_sPath);
    return isPlain ? "" : JsonText(FileUri(song.m_sPath));
}

std::string Error(CTakenSong const& song) {
    if (song.m_outcome.m_problem == EAnalysisProblem::None) {
        return "null";
    }
    return CJsonObject()
        .Add("code", JsonText(ProblemName(song.m_outcome)))
        .Add("message", TextOrNull(song.m_sMessage))
        .Close();
}

std::string Warning(CTakenSong const& song) {
    bool const isError = song.m_outcome.m_problem != EAnalysisProblem::None;
    return isError ? "null" : TextOrNull(song.m_sMessage);
}

std::string Start(CDecodeReport const& report) {
    return CJsonObject()
        .Add("samples", JsonNumber(report.m_nSkippedFrames))
        .Add("from", TextOrNull(StartNoteName(report.m_startNote)))
        .Close();
}

std::string Source(CTakenSong const& song) {
    CDecodeReport const& report = song.m_outcome.m_report;
    std::int64_t const bitRate = std::llround(std::min(song.m_dBitsPerSecond, 1e15));
    return CJsonObject()
        .Add("codec", TextOrNull(report.m_sCodec))
        .Add("container", TextOrNull(ContainerName(report.m_container)))
        .Add("rate", CountOrNull(report.m_nFileRate))
        .Add("channels", CountOrNull(report.m_nChannels))
        .Add("bitRate", CountOrNull(bitRate))
        .Add("start", Start(report))
        .Add("damaged", report.IsDamaged() ? "true" : "false")
        .Close();
}

std::string TempoSource(CTakenSong const& song) {
    std::string const name = TempoSourceName(song.m_tempoSource);
    return name.empty() ? "null" : JsonText(name);
}

std::string Candidate(CTempoCandidate const& reading) {
    std::string const ratio = reading.m_nTimes == 0 ? ""
                                                    : std::to_string(reading.m_nTimes) + ":" +
                                                          std::to_string(reading.m_nOver);
    return CJsonObject()
        .Add("tempo", JsonShortest(reading.m_fBpm))
        .Add("ratio", TextOrNull(ratio))
        .Add("score", JsonShortest(reading.m_fScore))
        .Close();
}

/// A key in all notations, open for more.
CJsonObject Notations(CHarmony const& key) {
    CJsonObject object;
    object.Add("plain", JsonText(PlainKey(key)))
        .Add("camelot", JsonText(CamelotCode(key)))
        .Add("openKey", JsonText(OpenKeyCode(key)));
    return object;
}

std::string Key(CTakenSong const& song) {
    return song.m_key.m_eMode == EKeyMode::None ? "null" : Notations(song.m_key).Close();
}

std::string Harmony(CTakenSong const& song) {
    if (song.m_harmony.m_eMode == EKeyMode::None) {
        return "null";
    }
    return Notations(song.m_harmony)
        .Add("confidence", JsonShortest(song.m_harmony.m_fConfidence))
        .Add("tuning", JsonShortest(song.m_harmony.m_fTuningCents))
        .Close();
}

std::string Meter(CTakenSong const& song) {
    CBeatTimes const& beats = song.m_beats;
    if (beats.m_nBeatsPerMeasure == 0) {
        return "null";
    }
    return CJsonObject()
        .Add("beatsPerMeasure", JsonNumber(std::int64_t{beats.m_nBeatsPerMeasure}))
        .Add("steady", beats.m_bSteady ? "true" : "false")
        .Add("beatConfidence", JsonShortest(beats.m_fBeatConfidence))
        .Add("downbeatConfidence", JsonShortest(beats.m_fDownbeatConfidence))
        .Close();
}

/// Seconds of the half beats for which `isWanted` holds.
template <typename Wanted>
std::string HalfBeatsThat(CTakenSong const& song, Wanted isWanted) {
    std::vector<double> seconds;
    for (CBeatTime const& beat : song.m_beats.m_vHalfBeats) {
        if (isWanted(beat)) {
            seconds.push_back(beat.m_dSeconds);
        }
    }
    return ListOf(seconds);
}

std::string Accents(CTakenSong const& song) {
    return CJsonObject()
        .Add("energy", ListOf(song.m_vEnergyAccents))
        .Add("bass", ListOf(song.m_vBassAccents))
        .Close();
}

std::string Intro(CTakenSong const& song) {
    return CJsonObject()
        .Add("end", Seconds(song.m_dIntroEnd))
        .Add("mixPoints", ListOf(song.m_vIntroMixes))
        .Close();
}

std::string Outro(CTakenSong const& song) {
    return CJsonObject()
        .Add("start", Seconds(song.m_dOutroStart))
        .Add("mixPoints", ListOf(song.m_vOutroMixes))
        .Close();
}

std::string Levels(CLevels const& levels) {
    return CJsonObject()
        .Add("step", Seconds(static_cast<double>(levels.m_nSamples) / kEngineRateHz))
        .Add("top", JsonShortest(levels.m_fTop))
        .Add("levels", ListOf(levels.m_vLevels))
        .Close();
}

std::string Fingerprint(CTakenSong const& song) {
    constexpr double kPrintMicroseconds = 1e6; // Standard: in a second.
    return CJsonObject()
        .Add("start",
             Seconds(static_cast<double>(song.m_print.m_nMicroseconds) / kPrintMicroseconds))
        .Add("values", ListOf(song.m_print.m_vValues))
        .Add("opening", Levels(song.m_opening))
        .Close();
}

std::string Envelopes(CTakenSong const& song) {
    return CJsonObject()
        .Add("energy", Levels(song.m_energy))
        .Add("bass", Levels(song.m_bass))
        .Close();
}

std::string Samples(CTakenSong const& song) {
    CEnginePositions const& positions = song.m_positions;
    return CJsonObject()
        .Add("rate", JsonNumber(std::int64_t{kEngineRateHz}))
        .Add("grid", ListOf(positions.m_vGrid))
        .Add("marks", ListOf(positions.m_vMarks))
        .Add("introEnd", JsonNumber(positions.m_nIntroEnd))
        .Add("outroStart", JsonNumber(positions.m_nOutroStart))
        .Add("fades", ListOf(positions.m_vFades))
        .Add("introMixPoints", ListOf(positions.m_vIntroMixes))
        .Add("outroMixPoints", ListOf(positions.m_vOutroMixes))
        .Close();
}

/// Whose a field is: the file's, told of every file; the song's, told of those that were heard; or
/// one that is told when it is asked for.
enum class EFieldOf { File, Song, Asker };

struct CField {
    std::string_view m_sName;
    EFieldOf m_of;
    std::string (*m_pMake)(CTakenSong const& song);
};

constexpr std::array kFields = {
    CField{"schema", EFieldOf::File, [](CTakenSong const&) { return JsonText(kSchema); }},
    CField{"engine", EFieldOf::File, [](CTakenSong const&) { return JsonText(TACTUS_VERSION); }},
    CField{"path", EFieldOf::File, [](CTakenSong const& song) { return JsonText(song.m_sPath); }},
    CField{"uri", EFieldOf::File, Uri},
    CField{"title", EFieldOf::File,
           [](CTakenSong const& song) { return TextOrNull(song.m_sTitle); }},
    CField{"artist", EFieldOf::File,
           [](CTakenSong const& song) { return TextOrNull(song.m_sArtist); }},
    CField{"album", EFieldOf::File,
           [](CTakenSong const& song) { return TextOrNull(song.m_sAlbum); }},
    CField{"tagKey", EFieldOf::File,
           [](CTakenSong const& song) { return TextOrNull(song.m_sTagKey); }},
    CField{"tagTempo", EFieldOf::File,
           [](CTakenSong const& song) { return TempoOrNull(song.m_dTagTempo); }},
    CField{"error", EFieldOf::File, Error},
    CField{"warning", EFieldOf::Song, Warning},
    CField{"duration", EFieldOf::Song,
           [](CTakenSong const& song) { return Seconds(song.m_dSeconds); }},
    CField{"source", EFieldOf::Song, Source},
    CField{"tempo", EFieldOf::Song,
           [](CTakenSong const& song) { return TempoOrNull(song.m_dTempo); }},
    CField{"tempoSource", EFieldOf::Song, TempoSource},
    CField{"heardTempo", EFieldOf::Song,
           [](CTakenSong const& song) { return TempoOrNull(song.m_dHeardTempo); }},
    CField{"confidence", EFieldOf::Song,
           [](CTakenSong const& song) { return JsonShortest(song.m_candidates.m_fConfidence); }},
    CField{"candidates", EFieldOf::Song,
           [](CTakenSong const& song) {
               return JsonArray(song.m_candidates.m_vCandidates, Candidate);
           }},
    CField{"key", EFieldOf::Song, Key},
    CField{"harmony", EFieldOf::Song, Harmony},
    CField{"meter", EFieldOf::Song, Meter},
    CField{"beats", EFieldOf::Song,
           [](CTakenSong const& song) { return ListOf(song.m_beats.Beats()); }},
    CField{"downbeats", EFieldOf::Song,
           [](CTakenSong const& song) { return ListOf(song.m_beats.Downbeats()); }},
    CField{"marks", EFieldOf::Song,
           [](CTakenSong const& song) {
               return HalfBeatsThat(song, [](CBeatTime const& beat) { return beat.m_bMarked; });
           }},
    CField{"halfBeats", EFieldOf::Asker,
           [](CTakenSong const& song) {
               return HalfBeatsThat(song, [](CBeatTime const& beat) { return beat.m_nPlace == 0; });
           }},
    CField{"accents", EFieldOf::Song, Accents},
    CField{"intro", EFieldOf::Song, Intro},
    CField{"outro", EFieldOf::Song, Outro},
    CField{"fades", EFieldOf::Song, [](CTakenSong const& song) { return ListOf(song.m_vFades); }},
    CField{"fingerprint", EFieldOf::Asker, Fingerprint},
    CField{"envelopes", EFieldOf::Asker, Envelopes},
    CField{"samples", EFieldOf::Asker, Samples},
};

bool IsHeard(CTakenSong const& song) {
    EAnalysisProblem const problem = song.m_outcome.m_problem;
    return problem == EAnalysisProblem::None || problem == EAnalysisProblem::NoBeat;
}

bool IsWanted(CField const& field, CTakenSong const& song, CSongJsonWishes const& wishes) {
    if (field.m_of != EFieldOf::File && !IsHeard(song)) {
        return false;
    }
    if (wishes.m_vOnly.empty()) {
        return field.m_of != EFieldOf::Asker || wishes.Names(field.m_sName);
    }
    bool const isError =
        field.m_sName == "error" && song.m_outcome.m_problem != EAnalysisProblem::None;
    return field.m_sName == "path" || field.m_sName == "uri" || isError ||
           wishes.Names(field.m_sName);
}

} // namespace

bool CSongJsonWishes::Names(std::string_view field) const {
    return std::ranges::count(m_vMore, field) > 0 || std::ranges::count(m_vOnly, field) > 0;
}

std::string SongJson(CTakenSong const& song, CSongJsonWishes const& wishes) {
    CJsonObject object;
    for (CField const& field : kFields) {
        std::string const json = IsWanted(field, song, wishes) ? field.m_pMake(song) : "";
        if (!json.empty()) {
            object.Add(field.m_sName, json);
        }
    }
    return object.Close();
}

std::vector<std::string_view> SongJsonFields() {
    std::vector<std::string_view> names;
    names.reserve(kFields.size());
    for (CField const& field : kFields) {
        names.push_back(field.m_sName);
    }
    return names;
}
