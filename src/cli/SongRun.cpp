// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/SongRun.h"

#include "cli/ExitCode.h"

int CSongRun::Write(std::string const& path, std::string const& text) const {
    COutput output;
    if (int const code = m_run.Open(output, path); code != kExitDone) {
        return code;
    }
    (void)output.Write(text);
    return output.Finish() ? kExitDone : kExitOutput;
}

CSongOptions CSongRun::Wishes(bool withEnvelopes) {
    CSongOptions song;
    song.m_bForce = true;
    song.m_bCandidates = true;
    song.m_bFacts = true;
    song.m_bEnvelopes = withEnvelopes;
    song.m_pStore = m_run.Store();
    return song;
}

int CSongRun::Run(SongSink const& sink, bool withEnvelopes) {
    COutput output;
    if (int const code = Open(output); code != kExitDone) {
        return code;
    }
    m_run.Run(Wishes(withEnvelopes), output,
              [&](CReportRow const& row) { return sink(*row.m_pSong, output) && output.Flush(); });
    int const code = m_run.Conclude();
    return output.Finish() ? code : kExitOutput;
}

int CSongRun::Gather(std::vector<CTakenSong>& songs, bool withEnvelopes, bool* isWhole) {
    m_run.Run(Wishes(withEnvelopes), COutput(), [&songs](CReportRow const& row) {
        songs.push_back(*row.m_pSong);
        return true;
    });
    *isWhole = m_run.IsWhole();
    return m_run.Conclude();
}
