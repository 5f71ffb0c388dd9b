// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/xml/Rekordbox.h"

#include "export/DecimalText.h"
#include "export/FileUri.h"
#include "export/TakenSong.h"
#include "export/TempoMap.h"
#include "export/xml/XmlText.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <map>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr double kToleranceSeconds = 0.003; // Fixed: what tempos of two decimals may add up to.
constexpr double kLeastBpm = 0.01;          // Standard: decimals of the format, as the next.
constexpr int kBpmDecimals = 2;
constexpr int kSecondDecimals = 3;
constexpr double kBitsPerKilobit = 1000.0;
constexpr char kLocalHost[] = "file://localhost"; // Standard: of the format.

void Set(pugi::xml_node node, char const* name, std::string const& value) {
    node.append_attribute(name).set_value(XmlText(value).c_str());
}

void Set(pugi::xml_node node, char const* name, std::size_t value) {
    Set(node, name, std::to_string(value));
}

std::string KindOf(EContainer container) {
    switch (container) {
    case EContainer::MpegAudio:
        return "MP3 File";
    case EContainer::Mp4:
    case EContainer::AdtsAac:
        return "M4A File";
    case EContainer::Wav:
    case EContainer::Wave64:
        return "WAV File";
    case EContainer::Aiff:
        return "AIFF File";
    case EContainer::Flac:
        return "FLAC File";
    case EContainer::Ogg:
        return "OGG File";
    default:
        return "Unknown File";
    }
}

fs::path AbsoluteOf(std::string const& path) {
    std::error_code error;
    fs::path const absolute = fs::absolute(path, error);
    return (error ? fs::path(path) : absolute).lexically_normal();
}

/// "D:" of a path on another system keeps its colon.
std::string LocationOf(std::string const& path, CRekordboxWishes const& wishes) {
    constexpr std::size_t kDriveSize = 2;
    std::string place = AbsoluteOf(path).native();
    std::string drive;
    if (!wishes.m_sBaseHere.empty()) {
        fs::path const below = fs::path(place).lexically_relative(AbsoluteOf(wishes.m_sBaseHere));
        if (!below.empty() && *below.begin() != "..") {
            std::string there = wishes.m_sBaseThere;
            std::ranges::replace(there, '\\', '/');
            there += there.ends_with('/') ? "" : "/";
            place = (there.starts_with('/') ? "" : "/") + there + below.native();
        }
    }
    if (place.size() > kDriveSize && place[kDriveSize] == ':') {
        drive = place.substr(0, kDriveSize + 1);
        place.erase(0, drive.size());
    }
    return kLocalHost + drive + PercentEncoded(place);
}

std::string NameOf(CTakenSong const& song) {
    return song.m_sTitle.empty() ? fs::path(song.m_sPath).stem().native() : song.m_sTitle;
}

void AddGrid(pugi::xml_node track, CTakenSong const& song, double offset) {
    int const metre = std::max<int>(song.m_beats.m_nBeatsPerMeasure, 1);
    for (CTempoStep const& step :
         MakeTempoMap(WholeBeats(song.m_beats), kToleranceSeconds, kLeastBpm)) {
        pugi::xml_node const tempo = track.append_child("TEMPO");
        Set(tempo, "Inizio", DecimalText(step.m_dSeconds + offset, kSecondDecimals));
        Set(tempo, "Bpm", DecimalText(step.m_dBpm, kBpmDecimals));
        Set(tempo, "Metro", std::to_string(metre) + "/4");
        Set(tempo, "Battito", std::to_string(step.m_nPlace));
    }
}

void AddCue(pugi::xml_node track, char const* name, double seconds) {
    pugi::xml_node const mark = track.append_child("POSITION_MARK");
    Set(mark, "Name", std::string(name));
    Set(mark, "Type", std::string("0")); // a cue
    Set(mark, "Start", DecimalText(seconds, kSecondDecimals));
    Set(mark, "Num", std::string("-1")); // kept in memory, on no pad
}

void AddTrack(pugi::xml_node collection, std::size_t id, CTakenSong const& song,
              CRekordboxWishes const& wishes) {
    CDecodeReport const& report = song.m_outcome.m_report;
    double const offset = wishes.m_offsetSeconds.value_or(RekordboxOffset(song));
    pugi::xml_node const track = collection.append_child("TRACK");
    Set(track, "TrackID", id);
    Set(track, "Name", NameOf(song));
    Set(track, "Artist", song.m_sArtist);
    Set(track, "Album", song.m_sAlbum);
    Set(track, "Kind", KindOf(report.m_container));
    Set(track, "Size", std::to_string(report.m_identity.m_nSize));
    Set(track, "TotalTime", DecimalText(song.m_dSeconds, 0));
    Set(track, "BitRate", DecimalText(song.m_dBitsPerSecond / kBitsPerKilobit, 0));
    Set(track, "SampleRate", std::to_string(report.m_nFileRate));
    Set(track, "AverageBpm", DecimalText(song.m_dTempo, kBpmDecimals));
    Set(track, "Tonality", PlainKey(song.m_harmony));
    Set(track, "Location", LocationOf(song.m_sPath, wishes));
    AddGrid(track, song, offset);
    if (song.m_dIntroEnd > 0.0) {
        AddCue(track, "Intro end", song.m_dIntroEnd + offset);
    }
    if (song.m_dOutroStart > 0.0 && song.m_dOutroStart < song.m_dSeconds) {
        AddCue(track, "Outro", song.m_dOutroStart + offset);
    }
}

/// The folder that all of these lie in.
fs::path CommonFolder(std::map<fs::path, std::vector<std::size_t>> const& folders) {
    fs::path common = folders.begin()->first;
    for (auto const& [folder, ids] : folders) {
        while (common != common.root_path()) {
            fs::path const below = folder.lexically_relative(common);
            if (!below.empty() && *below.begin() != "..") {
                break;
            }
            common = common.parent_path();
        }
    }
    return common;
}

void AddPlaylists(pugi::xml_node root,
                  std::map<fs::path, std::vector<std::size_t>> const& folders) {
    pugi::xml_node top = root.append_child("PLAYLISTS").append_child("NODE");
    Set(top, "Type", std::string("0")); // a folder of playlists
    Set(top, "Name", std::string("ROOT"));
    Set(top, "Count", folders.size());
    if (folders.empty()) {
        return;
    }
    fs::path const common = CommonFolder(folders);
    for (auto const& [folder, ids] : folders) {
        bool const isCommon = folder == common;
        std::string const name =
            isCommon ? folder.filename().native() : folder.lexically_relative(common).native();
        pugi::xml_node node = top.append_child("NODE");
        Set(node, "Name", name.empty() ? "/" : name);
        Set(node, "Type", std::string("1"));    // a playlist
        Set(node, "KeyType", std::string("0")); // whose songs are told by their TrackID
        Set(node, "Entries", ids.size());
        for (std::size_t const id : ids) {
            Set(node.append_child("TRACK"), "Key", id);
        }
    }
}

} // namespace

double RekordboxOffset(CTakenSong const& song) {
    CDecodeReport const& report = song.m_outcome.m_report;
    bool const isPlayed = report.m_container == EContainer::MpegAudio &&
                          report.m_startNote == EStartNote::EncoderTag && report.m_nFileRate > 0;
    return isPlayed ? static_cast<double>(report.m_nSkippedFrames) / report.m_nFileRate : 0.0;
}

std::string RekordboxOf(std::span<CTakenSong const> songs, CRekordboxWishes const& wishes) {
    pugi::xml_document document;
    pugi::xml_node const declaration = document.append_child(pugi::node_declaration);
    Set(declaration, "version", std::string("1.0"));
    Set(declaration, "encoding", std::string("UTF-8"));
    pugi::xml_node root = document.append_child("DJ_PLAYLISTS");
    Set(root, "Version", std::string("1.0.0"));
    pugi::xml_node const product = root.append_child("PRODUCT");
    Set(product, "Name", std::string("Tactus"));
    Set(product, "Version", wishes.m_sVersion);
    Set(product, "Company", std::string());
    pugi::xml_node const collection = root.append_child("COLLECTION");
    std::map<fs::path, std::vector<std::size_t>> folders;
    std::size_t id = 0;
    for (CTakenSong const& song : songs) {
        if (song.m_dSeconds > 0.0) {
            AddTrack(collection, ++id, song, wishes);
            folders[AbsoluteOf(song.m_sPath).parent_path()].push_back(id);
        }
    }
    Set(collection, "Entries", id);
    AddPlaylists(root, folders);
    return TextOf(document);
}
