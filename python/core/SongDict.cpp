// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "SongDict.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

namespace py = pybind11;
using namespace pybind11::literals;

namespace {

template <typename T>
py::array_t<T> ArrayOf(std::vector<T> const& values) {
    return py::array_t<T>(static_cast<py::ssize_t>(values.size()), values.data());
}

/// Another encoding than UTF-8 never comes through, but a tag's bytes are a stranger's.
py::str TextOf(std::string const& utf8) {
    auto const size = static_cast<py::ssize_t>(utf8.size());
    return py::reinterpret_steal<py::str>(PyUnicode_DecodeUTF8(utf8.data(), size, "replace"));
}

/// Beats a minute; None for none.
py::object TempoOf(double bpm) {
    return bpm > 0.0 ? py::object(py::float_(bpm)) : py::none();
}

py::dict KeyDict(tactus::Key const& key) {
    return py::dict("tonic"_a = key.tonic, "is_minor"_a = key.isMinor);
}

py::object KeyOf(std::optional<tactus::Key> const& key) {
    return key ? py::object(KeyDict(*key)) : py::none();
}

py::object HarmonyOf(std::optional<tactus::Harmony> const& harmony) {
    if (!harmony) {
        return py::none();
    }
    return py::dict("key"_a = KeyDict(harmony->key), "plain"_a = harmony->plain,
                    "camelot"_a = harmony->camelot, "open_key"_a = harmony->openKey,
                    "confidence"_a = harmony->confidence, "tuning"_a = harmony->tuning);
}

py::list CandidatesOf(std::vector<tactus::Candidate> const& candidates) {
    py::list list;
    for (tactus::Candidate const& candidate : candidates) {
        list.append(py::dict("tempo"_a = candidate.tempo, "times"_a = candidate.times,
                             "over"_a = candidate.over, "score"_a = candidate.score));
    }
    return list;
}

py::dict SourceOf(tactus::Source const& source) {
    return py::dict("decoder"_a = source.decoder, "rate"_a = source.rate,
                    "channels"_a = source.channels, "packets"_a = source.packets,
                    "bad_packets"_a = source.badPackets,
                    "promised_seconds"_a = source.promisedSeconds,
                    "heard_seconds"_a = source.heardSeconds, "is_damaged"_a = source.isDamaged);
}

py::dict MixPointsOf(tactus::MixPoints const& points) {
    return py::dict("intro_end"_a = points.introEnd, "outro_start"_a = points.outroStart,
                    "fade"_a = ArrayOf(points.fade), "intro"_a = ArrayOf(points.intro),
                    "outro"_a = ArrayOf(points.outro));
}

py::object EnvelopeOf(tactus::Envelope const& envelope) {
    if (envelope.values.empty()) {
        return py::none();
    }
    return py::dict("step"_a = envelope.step, "values"_a = ArrayOf(envelope.values));
}

} // namespace

py::dict SongDict(tactus::Song const& song) {
    return py::dict(
        "tempo"_a = TempoOf(song.tempo), "heard_tempo"_a = TempoOf(song.heardTempo),
        "confidence"_a = song.confidence, "candidates"_a = CandidatesOf(song.candidates),
        "seconds"_a = song.seconds, "key"_a = KeyOf(song.key),
        "harmony"_a = HarmonyOf(song.harmony), "source"_a = SourceOf(song.source),
        "beats_per_measure"_a = song.beatsPerMeasure, "beat_confidence"_a = song.beatConfidence,
        "downbeat_confidence"_a = song.downbeatConfidence, "beats"_a = ArrayOf(song.beats),
        "downbeats"_a = ArrayOf(song.downbeats), "measures"_a = ArrayOf(song.measures),
        "energy_accents"_a = ArrayOf(song.energyAccents),
        "bass_accents"_a = ArrayOf(song.bassAccents), "mix_points"_a = MixPointsOf(song.mixPoints),
        "fingerprint"_a = py::dict("start"_a = song.fingerprint.start,
                                   "values"_a = ArrayOf(song.fingerprint.values)),
        "energy"_a = EnvelopeOf(song.energy), "bass"_a = EnvelopeOf(song.bass));
}

py::dict TagsDict(tactus::Tags const& tags) {
    return py::dict("title"_a = TextOf(tags.title), "artist"_a = TextOf(tags.artist),
                    "album"_a = TextOf(tags.album), "key"_a = TextOf(tags.key),
                    "tempo_text"_a = TextOf(tags.tempoText), "tempo"_a = TempoOf(tags.tempo));
}

char const* NameOf(tactus::Problem problem) {
    using tactus::Problem;
    switch (problem) {
    case Problem::None:
    case Problem::NoBeat:
        break;
    case Problem::Cancelled:
        return "cancelled";
    case Problem::CannotOpen:
        return "cannot_open";
    case Problem::NotAFile:
        return "not_a_file";
    case Problem::Empty:
        return "empty";
    case Problem::Changed:
        return "changed";
    case Problem::NotAudio:
        return "not_audio";
    case Problem::OtherKind:
        return "other_kind";
    case Problem::Broken:
        return "broken";
    case Problem::NoSound:
        return "no_sound";
    case Problem::Protected:
        return "protected";
    case Problem::CannotDecode:
        return "cannot_decode";
    case Problem::BadRate:
        return "bad_rate";
    case Problem::BadSamples:
        return "bad_samples";
    case Problem::TooLong:
        return "too_long";
    case Problem::NoMemory:
        return "no_memory";
    }
    return "";
}

char const* NameOf(tactus::Refusal refusal) {
    using tactus::Refusal;
    switch (refusal) {
    case Refusal::None:
        break;
    case Refusal::NoTempo:
        return "no_tempo";
    case Refusal::NotMp3:
        return "not_mp3";
    case Refusal::NotWhole:
        return "not_whole";
    case Refusal::Changed:
        return "changed";
    case Refusal::InUse:
        return "in_use";
    case Refusal::NotAllowed:
        return "not_allowed";
    case Refusal::Tag:
        return "tag";
    case Refusal::TooLarge:
        return "too_large";
    case Refusal::DiskFull:
        return "disk_full";
    case Refusal::NoMemory:
        return "no_memory";
    case Refusal::Disk:
        return "disk";
    }
    return "";
}
