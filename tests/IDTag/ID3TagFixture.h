// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Tag.h"

#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

/// A tag, and a file that it is opened from.
class CID3TagFixture : public testing::Test {
protected:
    /// Opens a file with these bytes.
    CStatus Open(TagBytes const& bytes) {
        WriteBytes(m_sFile, bytes);
        return m_tag.OpenFile(Path());
    }

    CString Path() const { return CString::FromPath(m_sFile); }

    std::string Text(char const* id) {
        CString value;
        return m_tag.GetString(id, value) == kStatusOk ? value.ToUtf8() : "<none>";
    }

    TagBytes Body(char const* id) {
        CID3Frame* frame = nullptr;
        ID3V2_3_FRAMEHEADER header = {};
        std::uint8_t* data = nullptr;
        std::uint32_t size = 0;
        if (!m_tag.GetExistingFrame(id, &frame) ||
            frame->GetData(&header, &data, &size) != kStatusOk) {
            return {};
        }
        return {data, data + size};
    }

    CTempFolder m_folder;
    std::string const m_sFile = m_folder / "song.mp3";
    CID3Tag m_tag;
};
