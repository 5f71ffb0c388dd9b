// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/TagListing.h"

#include "IDTag/TagStore.h"
#include "cli/Message.h"
#include "export/Json.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <vector>

namespace {

/// One frame as it is shown.
struct CFrameRow {
    std::string m_sId;
    std::uint8_t m_nStatusFlags = 0;
    std::uint8_t m_nFormatFlags = 0;
    std::uint32_t m_nBodyBytes = 0;
    std::optional<std::string> m_sText; // UTF-8
};

/// Text frames and comments have a text, up to its first 0.
std::optional<std::string> TextOf(CID3Frame& frame, std::string const& id) {
    CString text;
    bool const isText = id.front() == 'T' || id == "COMM";
    if (!isText || FrameTextOf(frame, text) < 0) {
        return std::nullopt;
    }
    return text.ToUtf8();
}

std::vector<CFrameRow> RowsOf(CID3Tag const& tag) {
    std::vector<CFrameRow> rows;
    CID3Frame* frame = nullptr;
    for (std::uint32_t i = 0; tag.GetFrames().EnumItems(i, &frame); ++i) {
        CFrameRow row;
        ID3V2_3_FRAMEHEADER header = {};
        std::uint8_t* data = nullptr;
        (void)frame->GetData(&header, &data, &row.m_nBodyBytes);
        row.m_sId.assign(header.m_sId, kFrameIdBytes);
        if (tag.GetVersion() == 2 && row.m_sId.back() == '\0') {
            row.m_sId.pop_back(); // an id of three characters that version 2.3 doesn't know
        }
        row.m_nStatusFlags = header.m_nStatusFlags;
        row.m_nFormatFlags = header.m_nFormatFlags;
        row.m_sText = TextOf(*frame, row.m_sId);
        rows.push_back(std::move(row));
    }
    return rows;
}

template <typename... Numbers>
std::string JsonNumbers(Numbers... numbers) {
    return JsonArray(std::initializer_list<std::int64_t>{numbers...},
                     [](std::int64_t number) { return JsonNumber(number); });
}

std::string FrameAsJson(CFrameRow const& row) {
    return CJsonObject()
        .Add("id", JsonText(row.m_sId))
        .Add("flags", JsonNumbers(row.m_nStatusFlags, row.m_nFormatFlags))
        .Add("size", JsonNumber(std::int64_t{row.m_nBodyBytes}))
        .Add("text", row.m_sText ? JsonText(*row.m_sText) : "null")
        .Close();
}

std::string FrameAsLine(CFrameRow const& row) {
    constexpr std::size_t kRoom = 40; // the longest number has ten digits
    char columns[kRoom] = {};
    (void)std::snprintf(columns, sizeof columns, "  %02x %02x %10u  ", row.m_nStatusFlags,
                        row.m_nFormatFlags, row.m_nBodyBytes);
    return Printable(row.m_sId) + columns + Printable(row.m_sText.value_or("")) + "\n";
}

} // namespace

std::string TagAsJson(CID3Tag const& tag, CStatus status) {
    return CJsonObject()
               .Add("status", JsonNumber(std::int64_t{status}))
               .Add("version", JsonNumbers(tag.GetVersion(), tag.GetRevision()))
               .Add("tagSize", JsonNumber(std::int64_t{tag.GetTagSize()}))
               .Add("frames", JsonArray(RowsOf(tag), FrameAsJson))
               .Close() +
           "\n";
}

std::string TagAsText(CID3Tag const& tag, CStatus status) {
    if (status != kStatusOk) {
        return status < 0 ? "" : "no ID3v2 tag\n";
    }
    std::string text = "ID3v2." + std::to_string(tag.GetVersion()) + "." +
                       std::to_string(tag.GetRevision()) + ", " + std::to_string(tag.GetTagSize()) +
                       " bytes\n";
    for (CFrameRow const& row : RowsOf(tag)) {
        text += FrameAsLine(row);
    }
    return text;
}
