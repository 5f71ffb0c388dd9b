// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The steps: learn what is to be done; for each file find the tempo that it has, in its tag or from
// an earlier analysis; write the new one, and say so.

#include "cli/FixCommand.h"

#include "cli/ExitCode.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"
#include "cli/RecordReason.h"
#include "cli/Report.h"
#include "cli/WriteReason.h"
#include "records/Places.h"
#include "records/RecordStore.h"
#include "song/AudioKinds.h"
#include "song/SongTags.h"
#include "song/StoreTempo.h"
#include "song/TempoText.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <chrono>
#include <iostream>

namespace {

constexpr char kTap[] = "tap";

/// The tempo that a file has: by its tag, else as it was heard before.
std::optional<double> TempoOf(CInputFile const& input, CShownTags const& tags,
                              CRecordStore& store) {
    if (tags.m_tempo.m_worth != ETagTempo::None) {
        return tags.m_tempo.m_dBpm;
    }
    std::string const path = input.m_sPath.ToPath();
    std::optional<CFileIdentity> const identity = IdentityAt(path);
    CSongRecord const known = identity ? store.Find(path, *identity) : CSongRecord();
    double bpm = 0.0;
    if (known.m_heard) {
        std::string const& text = known.m_heard->m_sTempo;
        std::from_chars(text.data(), text.data() + text.size(), bpm);
    }
    return bpm > 0.0 ? std::optional(bpm) : std::nullopt;
}

/// What a write is held against: the text of the tempo in the tag.
CString TempoTextOf(CInputFile const& input, CShownTags const& tags) {
    CAudioKind const* const kind = FindAudioKind(input.m_sPath);
    bool const isOther = kind != nullptr && kind->m_writing == ETagWriting::Library;
    return isOther ? CString::FromUtf8(tags.m_sTempo) : ReadSongTags(input.m_sPath).m_sTempoFrame;
}

} // namespace

CLI::App* CFixCommand::AddTo(CLI::App& program) {
    CLI::App* const app =
        program.add_subcommand("fix", "Put tempos right that are a ratio off, or known to you");
    app->add_flag("-n,--dry-run", m_bDryRun, "Only say what would be written");
    app->add_flag("--keep-mtime", m_bKeepTime, "Leave the time of a file's last write as it is");
    app->add_flag("-L,--follow", m_walk.m_bFollows, "Search folders behind links too");
    app->add_option("HOW", m_sHow,
                    "x2, /2, 3:2, 2:3, 4:3 or 3:4 times what it is now; =174.5 for a tempo; tap to "
                    "tap it")
        ->type_name("")
        ->required()
        ->check([](std::string const& word) {
            return word == kTap || TempoFixOf(word)
                       ? std::string()
                       : "'" + word +
                             "' is none of x2, /2, 3:2, 2:3, 4:3, 3:4, = and a tempo from 20 to "
                             "999, and tap";
        });
    app->add_option("PATH", m_vPaths, "Files whose tags can be written, and folders to be searched")
        ->type_name("")
        ->required();
    app->footer(
        "What is written is marked as set by hand, and 'tactus undo' takes it back.\n\nExit "
        "status: 0 all done; 1 a file was left as it is; 2 wrong usage; 128 and\nthe "
        "signal's number when stopped.\n");
    return app;
}

int CFixCommand::Run() {
    CInterrupt::Install();
    std::optional<CTempoFix> const fix = TempoFixOf(m_sHow);
    m_fix = fix.value_or(CTempoFix());
    if (!fix && !Tap()) {
        ReportProblem("that was no tempo from 20 to 999: four taps are the fewest");
        return kExitFailed;
    }
    CRecordStore store(CacheFolder());
    CJournal journal(StateFolder());
    journal.SetStore(&store);
    CInputWalk walk(m_vPaths, m_walk);
    COutput output;
    bool isAllDone = true;
    while (std::optional<CInputFile> const input = walk.Next()) {
        isAllDone = Fix(*input, journal, store, output) && isAllDone;
    }
    for (std::string const& folder : walk.BarrenFolders()) {
        ReportProblem(folder, "holds no audio file");
        isAllDone = false;
    }
    bool const isWritten = output.Finish();
    ReportJournal(journal);
    if (CInterrupt::IsSet()) {
        return CInterrupt::ExitCode();
    }
    return !isWritten ? kExitOutput : isAllDone ? kExitDone : kExitFailed;
}

/// Takes the times at which lines come in, until one isn't empty or there are no more.
bool CFixCommand::Tap() {
    ReportProblem("press Enter on every beat; q and Enter ends it");
    std::vector<double> taps;
    std::string line;
    while (std::getline(std::cin, line) && line.empty()) {
        std::chrono::duration<double> const now =
            std::chrono::steady_clock::now().time_since_epoch();
        taps.push_back(now.count());
    }
    m_fix.m_dBpm = TappedTempo(taps).value_or(0.0);
    return m_fix.m_dBpm > 0.0;
}

/// Returns: false when the file is left as it is, which a person is told.
bool CFixCommand::Fix(CInputFile const& input, CJournal& journal, CRecordStore& store,
                      COutput& output) {
    auto const refuse = [&](std::string const& reason) {
        ReportProblem(input.m_sName, reason);
        return false;
    };
    if (!input.m_sError.empty()) {
        return refuse(input.m_sError);
    }
    CShownTags const tags = ReadShownTags(input.m_sPath);
    std::optional<double> const old = TempoOf(input, tags, store);
    if (m_fix.IsRatio() && !old) {
        return refuse("has no tempo that could be put right: analyze it first");
    }
    double const bpm = FixedTempo(m_fix, old.value_or(0.0));
    std::string const text = TempoText(bpm);
    if (!IsTempoInRange(bpm)) {
        return refuse("isn't written: " + text + " is no tempo from 20 to 999");
    }
    if (!m_bDryRun) {
        auto const witness = journal.Witness(EJournalWriter::Fix, ETextOrigin::Hand);
        CStoreTempoOptions options;
        options.m_bKeepTime = m_bKeepTime;
        options.m_tempoBefore = TempoTextOf(input, tags);
        options.m_pWitness = witness.get();
        EWriteProblem const problem =
            StoreGivenTempo(input.m_sPath, CString(text.c_str()), options);
        if (problem != EWriteProblem::None) {
            return refuse(WriteReason(problem));
        }
    }
    std::string const line =
        input.m_sName + ": " + FiniteTempoText(old).value_or("nothing") + " -> " + text;
    return output.Write((output.IsTerminal() ? Printable(line) : line) + "\n");
}
