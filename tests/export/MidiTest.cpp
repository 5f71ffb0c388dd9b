// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/Midi.h"
#include "export/MadeSong.h"

#include <gtest/gtest.h>

// The bytes are those that "Standard MIDI Files 1.0" asks for, written field by field.

namespace {

std::string Bytes(std::initializer_list<int> values) {
    std::string bytes;
    for (int const value : values) {
        bytes += static_cast<char>(value);
    }
    return bytes;
}

TEST(MidiTest, SongWithOneTempoIsALeadInAndOneTempo) {
    // Beats of half a second from 1.1 s on, the first one a downbeat: four beats of 275 ms before.
    CTakenSong song = MadeSong(120.0, 1.1, 8);
    song.m_sTitle = "Hi";
    std::string const track =
        Bytes({0x00, 0xFF, 0x01, 14}) + "made by Tactus" +     // text
        Bytes({0x00, 0xFF, 0x03, 2}) + "Hi" +                  // the track's name
        Bytes({0x00, 0xFF, 0x58, 4, 4, 2, 24, 8}) +            // 4/4
        Bytes({0x00, 0xFF, 0x51, 3, 0x04, 0x32, 0x38}) +       // 275000 microseconds
        Bytes({0x9E, 0x00, 0xFF, 0x51, 3, 0x07, 0xA1, 0x20}) + // 3840 ticks on: 500000
        Bytes({0xBC, 0x00, 0xFF, 0x2F, 0});                    // 7680 ticks on: the end
    std::string const head = "MThd" + Bytes({0, 0, 0, 6, 0, 0, 0, 1, 0x03, 0xC0}) + "MTrk" +
                             Bytes({0, 0, 0, static_cast<int>(track.size())});
    EXPECT_EQ(MidiOf(song), head + track);
}

TEST(MidiTest, LeadInEndsBeforeTheFirstDownbeat) {
    // The first beat is the third of its measure: two beats come before it, or six, or ten.
    std::string const midi = MidiOf(MadeSong(120.0, 3.1, 8, 3));
    // 3.1 s are 6.2 beats at 120: six of 516667 microseconds, 0x07E23B, and 5760 ticks.
    EXPECT_NE(midi.find(Bytes({0xFF, 0x51, 3, 0x07, 0xE2, 0x3B, 0xAD, 0x00, 0xFF, 0x51, 3})),
              std::string::npos);
}

TEST(MidiTest, SongThatBeginsWithABeatHasNoLeadIn) {
    std::string const midi = MidiOf(MadeSong(120.0, 0.0, 8));
    EXPECT_NE(midi.find(Bytes({0x00, 0xFF, 0x51, 3, 0x07, 0xA1, 0x20, 0xBC, 0x00, 0xFF, 0x2F, 0})),
              std::string::npos);
}

TEST(MidiTest, ThereIsNoneWithoutTwoBeats) {
    EXPECT_EQ(MidiOf(MadeSong(120.0, 0.5, 1)), "");
    EXPECT_EQ(MidiOf(CTakenSong()), "");
}

} // namespace
