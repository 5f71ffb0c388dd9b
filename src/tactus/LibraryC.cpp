// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "tactus/tactus.h"
#include "tactus/tactus_c.h"

#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace {

static_assert(static_cast<int>(tactus::Problem::NoBeat) == TACTUS_PROBLEM_NO_BEAT);
static_assert(static_cast<int>(tactus::Refusal::Disk) == TACTUS_REFUSAL_DISK);

/// The structure that C sees, and what its pointers lead to.
struct CSongForC {
    tactus_song m_face{};
    tactus::Song m_song;
    std::vector<tactus_candidate> m_candidates;
};

struct CTagsForC {
    tactus_tags m_face{};
    tactus::Tags m_tags;
};

tactus_times TimesOf(std::vector<double> const& values) {
    return {values.empty() ? nullptr : values.data(), values.size()};
}

tactus_weights WeightsOf(std::vector<float> const& values) {
    return {values.empty() ? nullptr : values.data(), values.size()};
}

tactus_song* FaceOf(tactus::Song song) {
    auto* const held = new CSongForC{{}, std::move(song), {}};
    tactus::Song const& from = held->m_song;
    for (tactus::Candidate const& reading : from.candidates) {
        held->m_candidates.push_back({reading.tempo, reading.times, reading.over, reading.score});
    }
    held->m_face = {
        .problem = static_cast<tactus_problem>(from.problem),
        .system_error = from.systemError,
        .tempo = from.tempo,
        .heard_tempo = from.heardTempo,
        .seconds = from.seconds,
        .tonic = from.key ? from.key->tonic : -1,
        .is_minor = from.key && from.key->isMinor ? 1 : 0,
        .is_damaged = from.source.isDamaged ? 1 : 0,
        .measures = TimesOf(from.measures),
        .energy_accents = WeightsOf(from.energyAccents),
        .bass_accents = WeightsOf(from.bassAccents),
        .intro_end = from.mixPoints.introEnd,
        .outro_start = from.mixPoints.outroStart,
        .fade_points = TimesOf(from.mixPoints.fade),
        .intro_mix_points = TimesOf(from.mixPoints.intro),
        .outro_mix_points = TimesOf(from.mixPoints.outro),
        .fingerprint_start = from.fingerprint.start,
        .fingerprint = WeightsOf(from.fingerprint.values),
        .confidence = from.confidence,
        .beats_per_measure = from.beatsPerMeasure,
        .beat_confidence = from.beatConfidence,
        .downbeat_confidence = from.downbeatConfidence,
        .beats = TimesOf(from.beats),
        .downbeats = TimesOf(from.downbeats),
        .harmony_tonic = from.harmony ? from.harmony->key.tonic : -1,
        .harmony_is_minor = from.harmony && from.harmony->key.isMinor ? 1 : 0,
        .harmony_confidence = from.harmony ? from.harmony->confidence : 0.0,
        .candidates = held->m_candidates.empty() ? nullptr : held->m_candidates.data(),
        .candidate_count = held->m_candidates.size(),
    };
    return &held->m_face;
}

/// The options for a progress function of C, whose answer may stop the run.
class CProgressForC {
public:
    CProgressForC(tactus_progress progress, void* user) {
        m_options.stop = m_stop.get_token();
        if (progress != nullptr) {
            m_options.progress = [this, progress, user](int percent) {
                if (progress(percent, user) != 0) {
                    m_stop.request_stop();
                }
            };
        }
    }

    [[nodiscard]] tactus::Options const& Options() const { return m_options; }

private:
    std::stop_source m_stop;
    tactus::Options m_options;
};

} // namespace

tactus_song* tactus_analyze_file(char const* path, tactus_progress progress, void* user) try {
    CProgressForC const told(progress, user);
    return FaceOf(tactus::analyze(path, told.Options()));
} catch (std::bad_alloc const&) {
    return nullptr;
}

tactus_song* tactus_analyze_samples(float const* samples, size_t count, unsigned rate,
                                    tactus_progress progress, void* user) try {
    CProgressForC const told(progress, user);
    return FaceOf(tactus::analyze(std::span(samples, count), rate, told.Options()));
} catch (std::bad_alloc const&) {
    return nullptr;
}

void tactus_free_song(tactus_song* song) {
    // The face is the first member, so both have one address.
    delete reinterpret_cast<CSongForC*>(song);
}

char* tactus_to_json(tactus_song const* song, char const* path, tactus_tags const* tags) try {
    auto const* const held = reinterpret_cast<CSongForC const*>(song);
    auto const* const read = reinterpret_cast<CTagsForC const*>(tags);
    std::string const json = tactus::toJson(held->m_song, path != nullptr ? path : "",
                                            read != nullptr ? read->m_tags : tactus::Tags());
    return strdup(json.c_str());
} catch (std::bad_alloc const&) {
    return nullptr;
}

void tactus_free_text(char* text) {
    std::free(text);
}

tactus_tags* tactus_read_tags(char const* path) try {
    auto* const held = new CTagsForC{{}, tactus::readTags(path)};
    held->m_face = {.title = held->m_tags.title.c_str(),
                    .artist = held->m_tags.artist.c_str(),
                    .album = held->m_tags.album.c_str(),
                    .key = held->m_tags.key.c_str(),
                    .tempo_text = held->m_tags.tempoText.c_str(),
                    .tempo = held->m_tags.tempo};
    return &held->m_face;
} catch (std::bad_alloc const&) {
    return nullptr;
}

void tactus_free_tags(tactus_tags* tags) {
    delete reinterpret_cast<CTagsForC*>(tags);
}

tactus_refusal tactus_store_tempo(char const* path, tactus_song const* song, double tempo) try {
    auto const* const held = reinterpret_cast<CSongForC const*>(song);
    return static_cast<tactus_refusal>(tactus::storeTempo(path, held->m_song, tempo));
} catch (std::bad_alloc const&) {
    return TACTUS_REFUSAL_NO_MEMORY;
}
