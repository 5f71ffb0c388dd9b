// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TagFile.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

/// Runs the program in a temporary folder, from outside.
class CCommandTest : public testing::Test {
protected:
    CProcessSetup Prepare(std::vector<std::string> const& arguments) {
        CProcessSetup setup;
        setup.m_vArguments = {TACTUS_PROGRAM};
        setup.m_vArguments.insert(setup.m_vArguments.end(), arguments.begin(), arguments.end());
        setup.m_sFolder = m_folder.Path();
        return setup;
    }

    CProcessResult Tactus(std::vector<std::string> const& arguments) {
        return RunProcess(Prepare(arguments));
    }

    /// A clip of 10 s without a sound: 240 / 10 doubled twice is 96.
    void WriteClip(std::string const& name) { WriteWav(m_folder / name, MakeSilence(10.0)); }

    /// The same as an mp3 without a tag; its padding makes it 10.03 to 10.07 s.
    void WriteMp3(std::string const& name) {
        WriteClip("source.wav");
        Ffmpeg({"-i", m_folder / "source.wav", "-c:a", "libmp3lame", "-write_xing", "0",
                "-id3v2_version", "0", m_folder / name});
    }

    /// A file of nothing but a tag with a tempo.
    void WriteTagged(std::string const& name, std::string const& tempo) {
        WriteBytes(m_folder / name, TagOf(3, Frame23("TBPM", Latin1Text(tempo))));
    }

    CTempFolder m_folder;
};
