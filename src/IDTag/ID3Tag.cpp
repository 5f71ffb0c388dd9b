// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/ID3Tag.h"

#include "IDTag/FrameIds.h"
#include "IDTag/FrameWalk.h"
#include "IDTag/MacCFile.h"
#include "IDTag/TagLayout.h"
#include "base/Assertion.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace {

constexpr char kTagSource[] = "IDTag/ID3Tag"; // Fixed: the source that assertions name.
constexpr char kFalse[] = "FALSE";            // Fixed: what failed when an id isn't known.
constexpr char kPrivateId[] = "PRIV";         // Standard: ID3v2.3.0, section 4.28.

/// True for a frame that was encoded once and is decoded twice, first with its tag: its size, which
/// counts the encoded bytes, is then too large, and zeros of its own go.
bool IsDecodedTwice(CRawTag const& tag, CFoundFrame const& found) {
    bool const isTagShorter = tag.m_nBodyBytes + kTagHeaderBytes < tag.m_nTagBytes;
    return isTagShorter && (found.m_header.m_nFormatFlags & kFrameUnsynchronized) != 0;
}

/// A path in a message: what could move a terminal's cursor becomes a question mark.
std::string Shown(CString const& path) {
    std::string text = path.ToPath();
    for (char& c : text) {
        auto const byte = static_cast<unsigned char>(c);
        c = byte < 0x20 || byte == 0x7F ? '?' : c;
    }
    return text;
}

bool IsCommentThatCounts(CID3Frame const& frame) {
    std::string language;
    std::wstring description;
    // A description that can't be converted is as good as none.
    return frame.GetCommentInfo(language, description) >= 0 && language == kCommentLanguage &&
           description.empty();
}

/// The text that counts: up to the first 0, and none when it can't be read.
std::wstring CurrentText(CID3Frame const& frame) {
    std::wstring text;
    (void)frame.GetString(text);
    return text.c_str();
}

} // namespace

CStatus CID3Tag::OpenFile(wchar_t const* path) {
    m_sPath = path;
    m_frames.DeleteAll();
    m_pTakenOut = nullptr;
    m_vWiderIds.clear();
    m_bUnreachedData = false;
    m_bUnknownIds = false;
    CRawTag tag;
    CStatus status = tag.Load(m_sPath);
    m_digest = tag.m_digest;
    m_nTagBytes = tag.m_nTagBytes;
    m_nVersion = tag.m_bMarked ? tag.Version() : std::uint8_t{0};
    m_nRevision = tag.m_bMarked ? tag.Revision() : std::uint8_t{0};
    m_bNoMemory = tag.m_bNoMemory;
    if (status == kStatusOk) {
        try {
            status = TakeFrames(tag);
        } catch (std::bad_alloc const&) {
            m_bNoMemory = true;
            status = kStatusFailure;
        }
    }
    m_bReadable = status >= 0;
    if (!m_bReadable) {
        m_frames.DeleteAll();
    }
    return status;
}

CStatus CID3Tag::TakeFrames(CRawTag const& tag) {
    CFrameWalk walk(tag, m_rules.m_bEveryId);
    CFoundFrame found;
    for (std::uint32_t count = 0; walk.Next(&found); ++count) {
        // Deliberate: a version 2.2 tag with an unknown frame isn't tolerated. Those who must go on
        // ask AreFrameIdsKnown first.
        TACTUS_ASSERT_DETAIL(kTagSource, found.m_bKnownId || m_rules.m_bEveryId, kFalse,
                             Shown(m_sPath));
        if (count == kMostFrames) {
            return kStatusFailure;
        }
        if (!TakeFrame(tag, found)) {
            m_bNoMemory = true;
            return kStatusFailure;
        }
    }
    m_bUnreachedData = m_bUnreachedData || walk.HasUnreachedData();
    return kStatusOk;
}

/// Returns: false when there is no memory for the frame.
bool CID3Tag::TakeFrame(CRawTag const& tag, CFoundFrame const& found) {
    auto frame = std::make_unique<CID3Frame>();
    if (frame->SetData(&found.m_header, found.m_pBody, found.m_nBodyBytes) < 0) {
        return false;
    }
    if (found.m_bOldPicture) {
        (void)frame->ConvertPicToApic();
    }
    m_bUnreachedData = m_bUnreachedData || IsDecodedTwice(tag, found);
    m_bUnknownIds = m_bUnknownIds || !found.m_bKnownId;
    bool const isListed =
        std::ranges::find(m_vWiderIds, found.m_sOldId, &CWiderId::m_sOld) != m_vWiderIds.end();
    if (found.m_bWiderId && !isListed) {
        m_vWiderIds.push_back({found.m_sOldId, {found.m_header.m_sId, kFrameIdBytes}});
    }
    m_frames.Add(std::move(frame));
    return true;
}

CStatus CID3Tag::AreFrameIdsKnown(wchar_t const* path) {
    CRawTag tag;
    if (tag.Load(path) != kStatusOk || tag.Version() != 2) {
        return kStatusOk;
    }
    CFrameWalk walk(tag);
    CFoundFrame found;
    while (walk.Next(&found)) {
        if (!found.m_bKnownId) {
            return kStatusNothing;
        }
    }
    return kStatusOk;
}

bool CID3Tag::GetExistingFrame(char const* id, CID3Frame** frame) const {
    for (std::uint32_t i = 0; m_frames.EnumItems(i, frame); ++i) {
        if ((*frame)->IsFrameIdMatch(id) == kStatusOk &&
            ((*frame)->IsFrameIdMatch(kCommentId) != kStatusOk || IsCommentThatCounts(**frame))) {
            return true;
        }
    }
    *frame = nullptr;
    return false;
}

CStatus CID3Tag::GetString(char const* id, CString& value) const {
    CID3Frame* frame = nullptr;
    std::wstring text;
    if (!GetExistingFrame(id, &frame) || frame->GetString(text) < 0) {
        return kStatusFailure;
    }
    value = text.c_str();
    return kStatusOk;
}

CStatus CID3Tag::SetString(char const* id, wchar_t const* value) {
    CID3Frame* frame = nullptr;
    bool const isThere = GetExistingFrame(id, &frame);
    if (CString(isThere ? CurrentText(*frame).c_str() : L"") == value) {
        return kStatusNothing;
    }
    if (!isThere) {
        frame = AppendFrame(id);
    }
    m_bModified = true;
    return frame->SetString(value == nullptr ? L"" : value);
}

CStatus CID3Tag::TakeOut(char const* id) {
    CID3Frame* frame = nullptr;
    if (!GetExistingFrame(id, &frame)) {
        return kStatusNothing;
    }
    m_pTakenOut = frame;
    m_bModified = true;
    return kStatusOk;
}

CID3Frame* CID3Tag::AppendFrame(char const* id) {
    auto frame = std::make_unique<CID3Frame>();
    frame->Initialize(id);
    CID3Frame* const added = frame.get();
    m_frames.Add(std::move(frame));
    return added;
}

CID3Frame* CID3Tag::FindPrivateFrame(char const* owner) const {
    CID3Frame* frame = nullptr;
    for (std::uint32_t i = 0; m_frames.EnumItems(i, &frame); ++i) {
        if (frame->IsFrameIdMatch(kPrivateId) == kStatusOk &&
            frame->IsPrivateURLMatch(owner) == kStatusOk) {
            return frame;
        }
    }
    return nullptr;
}

CStatus CID3Tag::GetPrivateBinaryData(char const* owner, std::uint8_t* data,
                                      std::uint32_t* size) const {
    CID3Frame const* const frame = FindPrivateFrame(owner);
    if (frame == nullptr) {
        return kStatusFailure;
    }
    std::vector<std::uint8_t> found;
    CStatus const status = frame->GetPrivateData(found);
    *size = static_cast<std::uint32_t>(found.size());
    if (data != nullptr && !found.empty()) {
        std::memcpy(data, found.data(), found.size());
    }
    return status;
}

CStatus CID3Tag::SetPrivateBinaryData(char const* owner, std::uint8_t const* data,
                                      std::uint32_t size) {
    CID3Frame* frame = FindPrivateFrame(owner);
    if (frame == nullptr) {
        frame = AppendFrame(kPrivateId);
    }
    m_bModified = true;
    return frame->SetPrivateData(owner, data, size);
}

CStatus CID3Tag::IsFileUpdateable(wchar_t const* path) {
    CFile file;
    return file.Open(path, CFile::modeReadWrite, nullptr) ? kStatusOk : kStatusNothing;
}

std::int32_t CID3Tag::MapV2FrameIdToV3(char const* v2id, char* v3id) {
    char const* const id = FindV3FrameId(v2id);
    TACTUS_ASSERT_TEXT(kTagSource, id != nullptr, kFalse);
    std::memcpy(v3id, id, kFrameIdBytes);
    return 1;
}
