// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"
#include "cli/SongRun.h"

/// `tactus dupes`: finds files that hold the same audio.
class CDupesCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    CSongRun m_run;
    bool m_bJson = false;
};
