// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/CacheCommand.h"

#include "cli/ExitCode.h"
#include "cli/Message.h"
#include "cli/Output.h"
#include "cli/RecordReason.h"
#include "records/Places.h"
#include "records/RecordStore.h"

#include <CLI/CLI.hpp>
#include <string>

CLI::App* CCacheCommand::AddTo(CLI::App& program) {
    CLI::App* const cache =
        program.add_subcommand("cache", "Look after what is remembered of songs");
    cache->require_subcommand(1);
    auto const add = [&](char const* name, char const* help, auto action) {
        CLI::App* const app = cache->add_subcommand(name, help);
        app->parse_complete_callback([this, action] { m_pAction = action; });
    };
    add("info", "Print where it lies, how much it is and of how many songs", &Info);
    add("prune", "Remove what another version of Tactus found", &Prune);
    add("clear", "Remove everything", &Clear);
    return cache;
}

int CCacheCommand::Run() {
    CRecordStore store(CacheFolder());
    int const code = m_pAction(store);
    ReportStore(store);
    return code;
}

int CCacheCommand::Info(CRecordStore& store) {
    std::optional<CStoreInfo> const info = store.Info();
    if (!info) {
        ReportProblem("nothing is remembered of songs");
        return kExitFailed;
    }
    COutput output;
    output.Write("path: " + (output.IsTerminal() ? Printable(info->m_sPath) : info->m_sPath) +
                 "\nbytes: " + std::to_string(info->m_nBytes) + " of at most " +
                 std::to_string(kStoreBytes) + "\nsongs: " + std::to_string(info->m_nSongs) +
                 "\nof another version: " + std::to_string(info->m_nOther) + "\n");
    return output.Finish() ? kExitDone : kExitOutput;
}

int CCacheCommand::TellRemoved(std::optional<std::int64_t> removed) {
    if (!removed) {
        ReportProblem("nothing is remembered of songs");
        return kExitFailed;
    }
    ReportProblem(std::to_string(*removed) + (*removed == 1 ? " song" : " songs") + " removed");
    return kExitDone;
}

int CCacheCommand::Prune(CRecordStore& store) {
    return TellRemoved(store.Prune());
}

int CCacheCommand::Clear(CRecordStore& store) {
    return TellRemoved(store.Clear());
}
