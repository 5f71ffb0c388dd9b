// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"
#include "cli/InputWalk.h"
#include "cli/Output.h"
#include "records/Journal.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class CRecordStore;

/// How a tempo is put right: the old one times a ratio, or a value. Nothing of both: it is tapped.
struct CTempoFix {
    int m_nTimes = 0;
    int m_nOver = 0;
    double m_dBpm = 0.0; // 0 when it is a ratio

    [[nodiscard]] bool IsRatio() const { return m_nOver != 0; }
};

/// The fix that a word stands for: x2, /2, 3:2, 2:3, 4:3, 3:4, or = and a tempo from 20 to 999.
/// Returns: nothing for any other word.
std::optional<CTempoFix> TempoFixOf(std::string_view word);

/// The tempo of beats that were tapped at these seconds, in their order: the mean of the spans
/// between them. Returns: nothing for fewer than four, or for no tempo from 20 to 999.
std::optional<double> TappedTempo(std::vector<double> const& seconds);

/// `tactus fix`: puts tempos right that are a ratio off, or known to a person.
class CFixCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    bool Tap();
    bool Fix(CInputFile const& input, CJournal& journal, CRecordStore& store, COutput& output);

    std::string m_sHow;
    std::vector<std::string> m_vPaths;
    CWalkOptions m_walk;
    CTempoFix m_fix;
    bool m_bDryRun = false;
    bool m_bKeepTime = false;
};
