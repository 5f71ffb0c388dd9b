// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The steps: hear the songs, or recall them; choose and sort; write them into one file, or each
// into one of its own.

#include "cli/ExportCommand.h"

#include "base/FileManager.h"
#include "cli/ExitCode.h"
#include "cli/ExportValues.h"
#include "cli/InputWalk.h"
#include "cli/Message.h"
#include "export/Jams.h"
#include "export/Labels.h"
#include "export/Midi.h"
#include "export/Playlist.h"
#include "export/SongFileName.h"
#include "export/xml/Rekordbox.h"
#include "export/xml/SongDrawing.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <filesystem>
#include <set>
#include <tuple>

namespace fs = std::filesystem;

namespace {

constexpr char kVersion[] = TACTUS_VERSION;
constexpr char kExportFooter[] =
    "Songs are chosen by --where, such as 'tempo>=120 and tempo<=130 and harmony~8A':\n"
    "= != < <= > >= and ~ (a part of a text, or a key that mixes well), and, or, not\n"
    "and brackets. It, --sort and csv --columns know: path, title, artist, album,\n"
    "tempo, source, confidence, tagTempo, key, harmony, openKey, keyConfidence,\n"
    "tagKey, duration, firstBeat, firstDownbeat, beats, beatsPerMeasure, introEnd,\n"
    "outroStart, codec, sampleRate, channels, bitRate, uri, folder, file, error.\n\n"
    "Exit status: 0 all done; 1 a file failed; 2 wrong usage; 4 warnings only;\n5 "
    "a file can't be written; 75 another run is at work; 128 and the signal's number\n"
    "when stopped.\n";

} // namespace

/// What is known of a kind of file: its name on the command line, what it is for, and either the
/// text of all songs or that of one with its extension.
struct CExportCommand::CFormat {
    char const* m_pName;
    char const* m_pHelp;
    std::string (*m_pTextOf)(CTakenSong const& song); // of one song; null: all go into one file
    char const* m_pExtension;
    bool m_bEnvelopes;
    void (*m_pAddOptions)(CLI::App& app, CExportCommand& command);
    std::string (*m_pTextOfAll)(std::vector<CTakenSong> const& songs,
                                CExportCommand const& command);
};

/// The options and texts of the formats.
struct CExportFormats {
    static void AddNone(CLI::App& /*app*/, CExportCommand& /*command*/) {}

    static void AddRekordbox(CLI::App& app, CExportCommand& command) {
        app.add_option_function<std::string>(
               "--base",
               [&command](std::string const& text) {
                   std::tie(command.m_sBaseHere, command.m_sBaseThere) = BaseOf(text);
               },
               "Tell songs below the folder HERE as lying below THERE")
            ->type_name("HERE=THERE");
        app.add_option_function<std::string>(
               "--offset",
               [&command](std::string const& text) { command.m_offsetSeconds = OffsetOf(text); },
               "Milliseconds added to every position; auto (if not said): what rekordbox "
               "plays of an MP3 before the music")
            ->type_name("MS");
    }
    static std::string Rekordbox(std::vector<CTakenSong> const& songs,
                                 CExportCommand const& command) {
        return RekordboxOf(songs, {.m_sBaseHere = command.m_sBaseHere,
                                   .m_sBaseThere = command.m_sBaseThere,
                                   .m_offsetSeconds = command.m_offsetSeconds,
                                   .m_sVersion = kVersion});
    }

    static void AddPlaylist(CLI::App& app, CExportCommand& command) {
        app.add_flag("--relative", command.m_bRelative, "Name songs from the playlist's folder on");
    }
    static std::string Playlist(std::vector<CTakenSong> const& songs,
                                CExportCommand const& command) {
        fs::path const list = command.m_run.OutputPath();
        std::string const folder = list.has_parent_path() ? list.parent_path().native() : ".";
        return PlaylistOf(songs, command.m_bRelative ? folder : std::string());
    }

    static void AddTable(CLI::App& app, CExportCommand& command) {
        command.m_table.m_vColumns = ColumnsOf("path,title,artist,tempo,key,harmony,duration");
        app.add_option_function<std::string>(
               "--columns",
               [&command](std::string const& text) {
                   command.m_table.m_vColumns = ColumnsOf(text);
               },
               "Names of columns with commas between")
            ->type_name("LIST");
        app.add_option_function<std::string>(
               "--delimiter",
               [&command](std::string const& text) {
                   command.m_table.m_cDelimiter = DelimiterOf(text);
               },
               "What stands between fields: , (if not said) ; | or tab")
            ->type_name("CHARACTER");
        app.add_flag("--bom", command.m_table.m_bMark,
                     "Begin with the mark by which spreadsheets know UTF-8");
    }
    static std::string Table(std::vector<CTakenSong> const& songs, CExportCommand const& command) {
        return SongTableOf(songs, command.m_table);
    }

    static std::string Jams(CTakenSong const& song) { return JamsOf(song, kVersion) + "\n"; }
};

namespace {

constexpr std::array<CExportCommand::CFormat, 7> kFormats = {
    {{"rekordbox", "A collection with beat grids, cues and playlists, as rekordbox imports it",
      nullptr, "", false, CExportFormats::AddRekordbox, CExportFormats::Rekordbox},
     {"labels", "Beats, downbeats, intro and outro as a label track of Audacity", LabelsOf, ".txt",
      false, CExportFormats::AddNone, nullptr},
     {"m3u8", "A playlist", nullptr, "", false, CExportFormats::AddPlaylist,
      CExportFormats::Playlist},
     {"csv", "A table with the columns that you choose", nullptr, "", false,
      CExportFormats::AddTable, CExportFormats::Table},
     {"midi", "Tempo map and time signature as a MIDI file, for sequencers", MidiOf, ".mid", false,
      CExportFormats::AddNone, nullptr},
     {"jams", "Tempo, beats, key and sections as annotations for music research",
      CExportFormats::Jams, ".jams", false, CExportFormats::AddNone, nullptr},
     {"svg", "A drawing of a song: envelope, bass, beats, mix points, accents, readings",
      SongDrawingOf, ".svg", true, CExportFormats::AddNone, nullptr}}};

/// "NAME.mid" in `folder`, with a number where another song has that name already.
std::string PlaceFor(CTakenSong const& song, std::string const& folder, char const* extension,
                     std::set<std::string>& taken) {
    std::string const path = song.m_sPath == kStandardInputName ? "standard-input" : song.m_sPath;
    return (fs::path(folder) / SongFileName(path, extension, taken)).native();
}

} // namespace

CLI::App* CExportCommand::AddTo(CLI::App& program) {
    CLI::App* const app =
        program.add_subcommand("export", "Write songs for the programs that you play with");
    app->require_subcommand(1);
    for (CFormat const& format : kFormats) {
        AddFormat(*app, format);
    }
    return app;
}

void CExportCommand::AddFormat(CLI::App& program, CFormat const& format) {
    CLI::App* const app = program.add_subcommand(format.m_pName, format.m_pHelp);
    app->parse_complete_callback([this, &format] {
        m_pFormat = &format;
        m_run.RequirePaths();
    });
    app->option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    format.m_pAddOptions(*app, *this);
    app->add_option_function<std::string>(
           "--where", [this](std::string const& text) { m_filter = FilterOf(text); },
           "Take only songs that this holds for")
        ->type_name("CONDITION");
    app->add_option_function<std::string>(
           "--sort", [this](std::string const& text) { m_order = OrderOf(text); },
           "Sort songs by columns, those with - before them downwards")
        ->type_name("LIST");
    m_run.AddOptions(*app);
    app->footer(kExportFooter);
}

bool CExportCommand::IsIntoFolder() const {
    std::string const& output = m_run.OutputPath();
    return !output.empty() && CFileManager::IsDirectory(CString::FromPath(output));
}

/// Why what was asked for can't be done, known before anything is heard; empty when it can.
std::string CExportCommand::Refusal() const {
    bool const isOneASong = m_pFormat->m_pTextOf != nullptr;
    if (!isOneASong && IsIntoFolder()) {
        return m_run.OutputPath() + ": is a folder; all songs go into one file";
    }
    std::vector<std::string> const& paths = m_run.Paths();
    bool const isManySongs =
        paths.size() > 1 ||
        (!paths.empty() && CFileManager::IsDirectory(CString::FromPath(paths.front())));
    if (isOneASong && isManySongs && !IsIntoFolder()) {
        return std::string(
            "several songs make several files: -o has to name a folder that is there");
    }
    return {};
}

int CExportCommand::Run() {
    if (int const code = m_run.Begin(); code != kExitDone) {
        return code;
    }
    if (std::string const refusal = Refusal(); !refusal.empty()) {
        ReportProblem(refusal);
        return kExitUsage;
    }
    std::vector<CTakenSong> songs;
    bool isWhole = false;
    int const code = m_run.Gather(songs, m_pFormat->m_bEnvelopes, &isWhole);
    if (!isWhole) {
        return m_run.End(code);
    }
    songs = Chosen(std::move(songs));
    int const writing =
        m_pFormat->m_pTextOf != nullptr
            ? WriteApart(songs)
            : m_run.Write(m_run.OutputPath(), m_pFormat->m_pTextOfAll(songs, *this));
    return m_run.End(writing != kExitDone ? writing : code);
}

std::vector<CTakenSong> CExportCommand::Chosen(std::vector<CTakenSong> songs) const {
    if (m_filter) {
        std::erase_if(songs, [this](CTakenSong const& song) { return !m_filter->Accepts(song); });
    }
    if (m_order) {
        m_order->Sort(songs);
    }
    return songs;
}

/// Writes each song into a file of its own. A song that there is nothing to write of, and a file
/// that must stay as it is, are told; the others are written.
int CExportCommand::WriteApart(std::vector<CTakenSong> const& songs) const {
    std::set<std::string> taken;
    int result = kExitDone;
    for (CTakenSong const& song : songs) {
        if (!(song.m_dSeconds > 0.0)) {
            continue; // which was told
        }
        std::string const text = m_pFormat->m_pTextOf(song);
        if (text.empty()) {
            ReportProblem(song.m_sPath, "has no beats to be written");
            result = std::max(result, kExitFailed);
            continue;
        }
        std::string const place =
            IsIntoFolder() ? PlaceFor(song, m_run.OutputPath(), m_pFormat->m_pExtension, taken)
                           : m_run.OutputPath();
        result = std::max(result, m_run.Write(place, text));
    }
    return result;
}
