// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// By "Standard MIDI Files 1.0" (RP-001): chunks "MThd" and "MTrk", numbers with the highest byte
// first, delta times of variable length, meta events FF TYPE LENGTH.

#include "export/Midi.h"

#include "export/TakenSong.h"
#include "export/TempoMap.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <vector>

namespace {

constexpr std::uint32_t kTicksPerBeat = 960; // Fixed: what sequencers use at the most.
constexpr double kToleranceSeconds = 0.0005; // Fixed: no ear hears less.
constexpr double kMicroseconds = 1e6;
constexpr std::uint32_t kLongestBeat = 0xFFFFFF; // Standard: of 24 bits, microseconds.
constexpr std::uint8_t kText = 0x01;             // Standard: meta events, as the next four.
constexpr std::uint8_t kTrackName = 0x03;
constexpr std::uint8_t kEndOfTrack = 0x2F;
constexpr std::uint8_t kTempo = 0x51;
constexpr std::uint8_t kTimeSignature = 0x58;

void PutNumber(std::string& bytes, std::uint32_t number, int count) {
    for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) {
        bytes += static_cast<char>(number >> shift & 0xFFU);
    }
}

/// Seven bits a byte, the highest first; all but the last have their top bit set.
void PutLength(std::string& bytes, std::uint32_t number) {
    int shift = 28;
    while (shift > 0 && number >> shift == 0) {
        shift -= 7;
    }
    for (; shift > 0; shift -= 7) {
        bytes += static_cast<char>((number >> shift & 0x7FU) | 0x80U);
    }
    bytes += static_cast<char>(number & 0x7FU);
}

/// One track on its way, and how long it is so far.
class CTrack {
public:
    void Put(std::uint32_t tick, std::uint8_t kind, std::string_view data) {
        PutLength(m_sBytes, tick - m_nTick);
        m_nTick = tick;
        m_sBytes += '\xFF';
        m_sBytes += static_cast<char>(kind);
        PutLength(m_sBytes, static_cast<std::uint32_t>(data.size()));
        m_sBytes += data;
    }

    /// From `beat` on, which is counted from the file's start, beats of so many microseconds.
    void PutTempo(std::uint32_t beat, std::uint32_t microseconds) {
        std::string data;
        PutNumber(data, microseconds, 3);
        Put(beat * kTicksPerBeat, kTempo, data);
    }

    [[nodiscard]] std::string const& Bytes() const { return m_sBytes; }

private:
    std::string m_sBytes;
    std::uint32_t m_nTick = 0;
};

std::uint32_t BeatMicroseconds(double seconds) {
    return static_cast<std::uint32_t>(
        std::lround(std::clamp(seconds * kMicroseconds, 1.0, double{kLongestBeat})));
}

/// Beats before the song's first one: near to its tempo, and so many that the first downbeat begins
/// a measure; none when the song begins with a beat.
std::uint32_t LeadInBeats(std::vector<CBeatTime> const& beats, int metre) {
    double const first = beats[0].m_dSeconds;
    double const length = beats[1].m_dSeconds - first;
    auto const downbeat = std::ranges::find(beats, 1, &CBeatTime::m_nPlace);
    auto const before = static_cast<int>(downbeat - beats.begin()) % metre;
    if (!(first > 0.0)) {
        return 0;
    }
    int count = before == 0 ? metre : metre - before;
    double const wanted = std::min(first / length, 1e6);
    int const half = metre / 2;
    while (static_cast<double>(count + half) < wanted) {
        count += metre;
    }
    return static_cast<std::uint32_t>(count);
}

void PutTempos(CTrack& track, std::vector<CBeatTime> const& beats, std::uint32_t leadIn) {
    double clock = 0.0; // of the file's beats, which are whole microseconds long
    if (leadIn > 0) {
        std::uint32_t const length = BeatMicroseconds(beats[0].m_dSeconds / leadIn);
        track.PutTempo(0, length);
        clock = leadIn * (length / kMicroseconds);
    }
    std::vector<CTempoStep> const steps = MakeTempoMap(beats, kToleranceSeconds, 0.0);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        std::size_t const first = steps[i].m_nBeat;
        std::size_t const last = i + 1 < steps.size() ? steps[i + 1].m_nBeat : beats.size() - 1;
        auto const count = static_cast<double>(last - first);
        std::uint32_t const length = BeatMicroseconds((beats[last].m_dSeconds - clock) / count);
        track.PutTempo(leadIn + static_cast<std::uint32_t>(first), length);
        clock += count * (length / kMicroseconds);
    }
}

} // namespace

std::string MidiOf(CTakenSong const& song) {
    std::vector<CBeatTime> const beats = WholeBeats(song.m_beats);
    if (beats.size() < 2 || !(beats[1].m_dSeconds > beats[0].m_dSeconds)) {
        return {};
    }
    int const metre = std::max<int>(song.m_beats.m_nBeatsPerMeasure, 1);
    std::uint32_t const leadIn = LeadInBeats(beats, metre);
    CTrack track;
    track.Put(0, kText, kMidiMark);
    track.Put(0, kTrackName, song.m_sTitle);
    // So many quarters a measure; 24 clocks of MIDI to a click, 8 thirty-seconds to a quarter.
    track.Put(0, kTimeSignature, std::string{static_cast<char>(metre), 2, 24, 8});
    PutTempos(track, beats, leadIn);
    track.Put((leadIn + static_cast<std::uint32_t>(beats.size())) * kTicksPerBeat, kEndOfTrack, "");
    std::string file = "MThd";
    PutNumber(file, 6, 4);
    PutNumber(file, 0, 2);
    PutNumber(file, 1, 2);
    PutNumber(file, kTicksPerBeat, 2);
    file += "MTrk";
    PutNumber(file, static_cast<std::uint32_t>(track.Bytes().size()), 4);
    return file + track.Bytes();
}
