// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <deque>
#include <optional>

/// How long work will take by how it went lately. What was quick at the start, as songs that are
/// remembered, is forgotten soon.
/// Units: times in seconds since any moment, work in any unit of one size.
/// Thread: one thread at a time.
class CPace {
public:
    /// Takes note that `done` is done at the time `now`, which never goes back.
    void Note(double now, double done);

    /// The seconds until `all` is done, counted from the last note. Nothing until there is a second
    /// to go by, and while nothing gets done.
    [[nodiscard]] std::optional<double> Left(double all) const;

private:
    struct CMark {
        double m_dTime;
        double m_dDone;
    };

    std::deque<CMark> m_vMarks; // the oldest first; the last one is the last note
};
