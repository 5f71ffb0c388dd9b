// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/Columns.h"

#include "export/DecimalText.h"
#include "export/FileUri.h"
#include "export/ProblemName.h"
#include "export/TakenSong.h"
#include "song/KeyCodes.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace {

constexpr double kBitsPerKilobit = 1000.0;

CCell TextCell(std::string text) {
    return text.empty() ? CCell() : CCell(std::move(text));
}

/// A number above 0, which stands for nothing.
CCell NumberCell(double number) {
    return number > 0.0 ? CCell(number) : CCell();
}

bool IsHeard(CTakenSong const& song) {
    return song.m_dSeconds > 0.0;
}

CCell CountCell(CTakenSong const& song, std::size_t count) {
    return IsHeard(song) ? CCell(static_cast<double>(count)) : CCell();
}

CCell SourceCell(CTakenSong const& song) {
    std::string const name = TempoSourceName(song.m_tempoSource);
    return name.empty() ? CCell() : CCell(name);
}

CCell FirstCell(std::vector<double> const& seconds) {
    return seconds.empty() ? CCell() : CCell(seconds.front());
}

// In the order in which `Columns` hands them out.
constexpr std::array kColumns = {
    CColumn{"path", kTexts, [](CTakenSong const& song) { return TextCell(song.m_sPath); }},
    CColumn{"title", kTexts, [](CTakenSong const& song) { return TextCell(song.m_sTitle); }},
    CColumn{"artist", kTexts, [](CTakenSong const& song) { return TextCell(song.m_sArtist); }},
    CColumn{"album", kTexts, [](CTakenSong const& song) { return TextCell(song.m_sAlbum); }},
    CColumn{"tempo", 2, [](CTakenSong const& song) { return NumberCell(song.m_dTempo); }},
    CColumn{"source", kTexts, SourceCell},
    CColumn{"confidence", 3,
            [](CTakenSong const& song) {
                return NumberCell(static_cast<double>(song.m_candidates.m_fConfidence));
            }},
    CColumn{"tagTempo", 2, [](CTakenSong const& song) { return NumberCell(song.m_dTagTempo); }},
    CColumn{"key", kTexts,
            [](CTakenSong const& song) { return TextCell(PlainKey(song.m_harmony)); }},
    CColumn{"harmony", kTexts,
            [](CTakenSong const& song) { return TextCell(CamelotCode(song.m_harmony)); }},
    CColumn{"openKey", kTexts,
            [](CTakenSong const& song) { return TextCell(OpenKeyCode(song.m_harmony)); }},
    CColumn{"keyConfidence", 3,
            [](CTakenSong const& song) {
                return NumberCell(static_cast<double>(song.m_harmony.m_fConfidence));
            }},
    CColumn{"tagKey", kTexts, [](CTakenSong const& song) { return TextCell(song.m_sTagKey); }},
    CColumn{"duration", 3, [](CTakenSong const& song) { return NumberCell(song.m_dSeconds); }},
    CColumn{"firstBeat", 6, [](CTakenSong const& song) { return FirstCell(song.m_beats.Beats()); }},
    CColumn{"firstDownbeat", 6,
            [](CTakenSong const& song) { return FirstCell(song.m_beats.Downbeats()); }},
    CColumn{"beats", 0,
            [](CTakenSong const& song) { return CountCell(song, song.m_beats.Beats().size()); }},
    CColumn{"beatsPerMeasure", 0,
            [](CTakenSong const& song) {
                return NumberCell(static_cast<double>(song.m_beats.m_nBeatsPerMeasure));
            }},
    CColumn{
        "introEnd", 3,
        [](CTakenSong const& song) { return IsHeard(song) ? CCell(song.m_dIntroEnd) : CCell(); }},
    CColumn{
        "outroStart", 3,
        [](CTakenSong const& song) { return IsHeard(song) ? CCell(song.m_dOutroStart) : CCell(); }},
    CColumn{"codec", kTexts,
            [](CTakenSong const& song) { return TextCell(song.m_outcome.m_report.m_sCodec); }},
    CColumn{"sampleRate", 0,
            [](CTakenSong const& song) {
                return NumberCell(static_cast<double>(song.m_outcome.m_report.m_nFileRate));
            }},
    CColumn{"channels", 0,
            [](CTakenSong const& song) {
                return NumberCell(static_cast<double>(song.m_outcome.m_report.m_nChannels));
            }},
    CColumn{
        "bitRate", 0, // in kilobits
        [](CTakenSong const& song) { return NumberCell(song.m_dBitsPerSecond / kBitsPerKilobit); }},
    CColumn{"uri", kTexts, [](CTakenSong const& song) { return TextCell(FileUri(song.m_sPath)); }},
    CColumn{"folder", kTexts, [](CTakenSong const& song) { return TextCell(song.m_sFolder); }},
    CColumn{
        "file", kTexts,
        [](CTakenSong const&
               song) { return TextCell(std::filesystem::path(song.m_sPath).filename().native()); }},
    CColumn{"error", kTexts, [](CTakenSong const& song) { return TextCell(song.m_sMessage); }}};

} // namespace

std::span<CColumn const> Columns() {
    return kColumns;
}

CColumn const* FindColumn(std::string_view name) {
    auto const column = std::ranges::find(kColumns, name, &CColumn::m_sName);
    return column == kColumns.end() ? nullptr : &*column;
}

std::string TextOf(CColumn const& column, CCell const& cell) {
    if (double const* const number = std::get_if<double>(&cell); number != nullptr) {
        return DecimalText(*number, column.m_nDecimals);
    }
    std::string const* const text = std::get_if<std::string>(&cell);
    return text != nullptr ? *text : std::string();
}
