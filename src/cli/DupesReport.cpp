// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/DupesReport.h"

#include "base/Utf16.h"
#include "cli/Message.h"
#include "export/DecimalText.h"
#include "export/FileUri.h"
#include "export/Json.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <tuple>

namespace {

constexpr double kCutSeconds = 0.2; // Fixed: more than coders add at the ends.
constexpr double kBitsPerKilobit = 1000.0;
constexpr int kOffsetDecimals = 3;
constexpr int kLikenessDecimals = 3;

/// True for codecs that bring back every sample, by the decoding library's names.
bool IsLossless(std::string_view codec) {
    constexpr std::array<std::string_view, 7> kNames = {"flac",    "alac",        "ape",    "tta",
                                                        "wavpack", "wmalossless", "shorten"};
    return codec.starts_with("pcm_") || std::ranges::find(kNames, codec) != kNames.end();
}

std::string Padded(std::string const& text, std::size_t width, bool toTheRight) {
    std::string const spaces(width - std::min(width, text.size()), ' ');
    return toTheRight ? spaces + text : text + spaces;
}

std::string SignedSeconds(double seconds) {
    std::string text(seconds > 0.0 ? "+" : "");
    text += DecimalText(seconds, kOffsetDecimals);
    return text;
}

std::string Kilobits(CTakenSong const& song) {
    return DecimalText(song.m_dBitsPerSecond / kBitsPerKilobit, 0);
}

std::string FileJson(CTakenSong const& song, CSameSong const& same, bool isKept) {
    CJsonObject object;
    object.Add("path", JsonText(song.m_sPath));
    if (!IsUtf8(song.m_sPath)) {
        object.Add("uri", JsonText(FileUri(song.m_sPath)));
    }
    return object.Add("keep", isKept ? "true" : "false")
        .Add("offset", DecimalText(same.m_dOffsetSeconds, kOffsetDecimals))
        .Add("likeness", DecimalText(same.m_dLikeness, kLikenessDecimals))
        .Add("duration", JsonSeconds(song.m_dSeconds))
        .Add("codec", JsonText(song.m_outcome.m_report.m_sCodec))
        .Add("kilobitsPerSecond", Kilobits(song))
        .Add("sampleRate", JsonNumber(std::int64_t{song.m_outcome.m_report.m_nFileRate}))
        .Close();
}

} // namespace

bool IsBetterCopy(CTakenSong const& a, CTakenSong const& b) {
    CDecodeReport const& first = a.m_outcome.m_report;
    CDecodeReport const& second = b.m_outcome.m_report;
    if (first.IsDamaged() != second.IsDamaged()) {
        return !first.IsDamaged();
    }
    if (IsLossless(first.m_sCodec) != IsLossless(second.m_sCodec)) {
        return IsLossless(first.m_sCodec);
    }
    if (std::abs(a.m_dSeconds - b.m_dSeconds) > kCutSeconds) {
        return a.m_dSeconds > b.m_dSeconds;
    }
    auto const rankOf = [](CTakenSong const& song) {
        return std::tuple(song.m_dBitsPerSecond, song.m_outcome.m_report.m_nFileRate,
                          !song.m_sTitle.empty());
    };
    return rankOf(a) > rankOf(b);
}

std::string DupesTable(std::span<CTakenSong const> songs,
                       std::vector<std::vector<CSameSong>> const& groups) {
    std::string table =
        std::string(kDupesHeading) + "  Offset s  Likeness  Codec      kbit/s  Path\n";
    std::size_t number = 0;
    for (std::vector<CSameSong> const& group : groups) {
        ++number;
        for (CSameSong const& same : group) {
            CTakenSong const& song = songs[same.m_nSong];
            table += Padded(std::to_string(number), 5, true) + "  " +
                     Padded(&same == &group.front() ? "keep" : "", 4, false) + "  " +
                     Padded(SignedSeconds(same.m_dOffsetSeconds), 8, true) + "  " +
                     Padded(DecimalText(same.m_dLikeness, kLikenessDecimals), 8, true) + "  " +
                     Padded(song.m_outcome.m_report.m_sCodec, 9, false) + "  " +
                     Padded(Kilobits(song), 6, true) + "  " + Printable(song.m_sPath) + "\n";
        }
    }
    return table;
}

std::string DupesJson(std::span<CTakenSong const> songs,
                      std::vector<std::vector<CSameSong>> const& groups) {
    auto const groupJson = [&](std::vector<CSameSong> const& group) {
        return JsonArray(group, [&](CSameSong const& same) {
            return FileJson(songs[same.m_nSong], same, &same == &group.front());
        });
    };
    return CJsonObject()
        .Add("schema", JsonText("tactus-dupes-1"))
        .Add("songs", JsonNumber(static_cast<std::int64_t>(songs.size())))
        .Add("groups", JsonArray(groups, groupJson))
        .Close();
}
