// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Command.h"

#include <cstdint>
#include <optional>

class CRecordStore;

/// `tactus cache info|prune|clear`: the store of results.
class CCacheCommand final : public ICommand {
public:
    CLI::App* AddTo(CLI::App& program) override;
    int Run() override;

private:
    static int Info(CRecordStore& store);
    static int Prune(CRecordStore& store);
    static int Clear(CRecordStore& store);
    static int TellRemoved(std::optional<std::int64_t> removed);

    int (*m_pAction)(CRecordStore&) = nullptr;
};
