// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/OutputGuard.h"

#include "cli/DupesReport.h"
#include "cli/InputWalk.h"
#include "export/Columns.h"
#include "export/Midi.h"
#include "export/Playlist.h"
#include "export/xml/SongDrawing.h"

#include <algorithm>
#include <array>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// Derived: the longest path that the system knows has 4096 bytes, a table's first line pads it by
// as many, and the title may be long.
constexpr std::size_t kHeadBytes = 65536;

std::string HeadOf(int file) {
    std::string head(kHeadBytes, '\0');
    ssize_t const size = ::pread(file, head.data(), head.size(), 0);
    head.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    return head;
}

/// The headings of a table, whatever lies between them. The last two come on request.
bool IsTableHead(std::string_view line) {
    for (std::string_view const heading : {"Path", "Title", "Artist", "Tempo", "Source"}) {
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        if (!line.starts_with(heading)) {
            return false;
        }
        line.remove_prefix(heading.size());
    }
    for (std::string_view const heading : {"Or", "Key"}) {
        std::string_view const rest =
            line.substr(std::min(line.find_first_not_of(' '), line.size()));
        line = rest.starts_with(heading) ? rest.substr(heading.size()) : line;
    }
    return line.empty();
}

bool IsJsonRow(std::string_view line) {
    bool const isRow = line.starts_with(R"({"path":")") &&
                       line.find(R"(","title":")") != line.npos &&
                       line.find(R"(,"tempo":)") != line.npos;
    return isRow || line.starts_with(R"({"schema":"tactus-song-)");
}

/// The first line of a table that `tactus export csv` wrote: names of columns, one of them a name
/// that other programs' tables don't have.
bool IsColumnHead(std::string_view line) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF"; // Standard: U+FEFF in UTF-8.
    constexpr std::array<std::string_view, 8> kOwn = {
        "harmony",   "openKey",       "tagTempo",        "keyConfidence",
        "firstBeat", "firstDownbeat", "beatsPerMeasure", "outroStart"};
    line.remove_prefix(line.starts_with(kMark) ? kMark.size() : 0);
    bool isOwn = false;
    while (!line.empty()) {
        std::string_view const name = line.substr(0, line.find_first_of(",;|\t"));
        if (FindColumn(name) == nullptr) {
            return false;
        }
        isOwn = isOwn || std::ranges::find(kOwn, name) != kOwn.end();
        line.remove_prefix(std::min(name.size() + 1, line.size()));
    }
    return isOwn;
}

bool IsSame(struct stat const& a, struct stat const& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

} // namespace

bool IsReportText(std::string_view text) {
    std::string_view const line = text.substr(0, text.find('\n'));
    if (line == "[") {
        std::string_view const rest = text.substr(std::min(line.size() + 1, text.size()));
        return IsJsonRow(rest.substr(0, rest.find('\n')));
    }
    return text.empty() || line == "[]" ||
           line.starts_with("path,title,artist,tempo,source,error") || IsJsonRow(line) ||
           IsTableHead(line);
}

bool IsExportText(std::string_view text) {
    struct CSign {
        std::string_view m_sStart;
        std::string_view m_sWithin;
    };
    // How the formats begin, and what says in each that it is ours.
    constexpr std::array<CSign, 7> kSigns = {
        {{"#EXTM3U\n", kPlaylistMark},
         {"MThd", kMidiMark},
         {"<?xml", "<PRODUCT Name=\"Tactus\""},
         {"<?xml", kDrawingMark},
         {"{\"file_metadata\":", "\"annotation_tools\":\"Tactus"},
         {"{\"schema\":\"tactus-", ""},
         {kDupesHeading, ""}}};
    auto const isOne = [&](CSign const& sign) {
        return text.starts_with(sign.m_sStart) &&
               text.find(sign.m_sWithin) != std::string_view::npos;
    };
    return std::ranges::any_of(kSigns, isOne) || IsColumnHead(text.substr(0, text.find('\n')));
}

COutputGuard::COutputGuard(std::vector<std::string> inputs, CWalkOptions const& options,
                           bool isOverwriting)
    : m_vInputs(std::move(inputs)), m_options(options), m_bOverwriting(isOverwriting) {
}

std::string COutputGuard::Problem(std::string const& path, int file) const {
    std::string const head = HeadOf(file);
    bool const isOurs = IsReportText(head) || IsExportText(head);
    if (IsInput(path, file, isOurs)) {
        return "is to be analysed, so the results can't go there";
    }
    if (isOurs || m_bOverwriting) {
        return {};
    }
    return "holds something else than results; --overwrite-output replaces it";
}

/// True when the file is one of those that are to be analysed, by whatever name.
bool COutputGuard::IsInput(std::string const& path, int file, bool isOurs) const {
    struct stat target {};
    if (::fstat(file, &target) != 0) {
        return true;
    }
    auto const isTarget = [&](std::string const& input) {
        struct stat info {};
        return ::stat(input.c_str(), &info) == 0 && IsSame(info, target);
    };
    if (std::ranges::any_of(m_vInputs, isTarget)) {
        return true;
    }
    // A text of ours with one name, which isn't that of a song, can't be one that a search finds.
    if (isOurs && target.st_nlink == 1 && !HasAudioExtension(path)) {
        return false;
    }
    std::vector<std::string> paths = m_vInputs;
    std::erase(paths, kStandardInputName);
    CInputWalk walk(std::move(paths), m_options);
    while (std::optional<CInputFile> const input = walk.Next()) {
        if (isTarget(input->m_sPath.ToPath())) {
            return true;
        }
    }
    return false;
}
