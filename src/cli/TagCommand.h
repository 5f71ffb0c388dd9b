// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"

#include <string>

/// `tactus tag get|set|list`: one frame's text, or all frames of a tag.
class CTagCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    int Get() const;
    int Set() const;
    int List() const;

    int (CTagCommand::*m_pAction)() const = nullptr;
    std::string m_sFile;
    std::string m_sFrameId;
    std::string m_sText;
    bool m_bJson = false;
    bool m_bKeepTime = false;
};
