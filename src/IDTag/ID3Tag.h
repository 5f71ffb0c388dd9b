// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "IDTag/ID3Frame.h"
#include "IDTag/RawTag.h"
#include "IDTag/TagBytes.h"
#include "IDTag/WriteProblem.h"
#include "base/CString.h"
#include "base/FileIdentity.h"
#include "base/PtrContainer.h"
#include "base/Status.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct CFoundFrame;

constexpr std::uint32_t kMostFrames = 65'536; // Fixed: a tag with more is taken for broken.

/// What the programs ask of a tag beyond what the class does by itself.
struct CTagRules {
    /// Reading: version 2.2 ids are looked up in a wider table instead of ending the process. A
    /// frame with an id that isn't there either is read under its three characters and a 0, and
    /// the tag can't be written.
    bool m_bEveryId = false;

    /// Writing: frames marked to be dropped when the file is altered stay. In the standard the mark
    /// speaks of altered audio, and writing a tag alters none.
    bool m_bKeepMarked = false;

    /// Writing: the file must be this one, in this state.
    std::optional<CFileIdentity> m_expected;

    /// Writing: the file's time of the last write stays.
    bool m_bKeepTime = false;

    /// Writing: a version 2.4 tag is written as one, its frames in the forms that they have.
    bool m_bKeepVersion = false;

    /// Writing: told of the file, the old tag's bytes and the new one's, before the first byte is
    /// written and with the file locked.
    std::function<void(CFileIdentity const&, std::span<std::uint8_t const>,
                       std::span<std::uint8_t const>)>
        m_onWriting;
};

/// A version 2.2 id and the name that it was read under.
struct CWiderId {
    std::string m_sOld;
    std::string m_sNew;
};

/// The ID3v2 tag at the start of an audio file: reads versions 2.2, 2.3 and 2.4, changes texts and
/// private data, writes version 2.3. An object is for one round of open, change, update.
///
/// A version 2.2 frame id without a name in version 2.3 ends the process with an assertion; ask
/// `AreFrameIdsKnown` first where that must not happen, or set a rule.
/// Thread: one at a time.
class CID3Tag {
public:
    CID3Tag() = default;
    virtual ~CID3Tag() = default;
    CID3Tag(CID3Tag const&) = delete;
    CID3Tag& operator=(CID3Tag const&) = delete;

    /// For the operations that follow.
    void SetRules(CTagRules const& rules) { m_rules = rules; }

    /// Returns: `kStatusOk`; `kStatusNothing` for a file without a tag of version 2, 3 or 4;
    /// `kStatusFailure` when the file doesn't open, ends within the tag, has more than 65,536
    /// frames, or there is no memory for it.
    CStatus OpenFile(wchar_t const* path);

    /// Looks only at the header and the ids.
    /// Returns: `kStatusOk` when `OpenFile` gets through the file, whatever its answer;
    /// `kStatusNothing` when it would meet a version 2.2 id that it doesn't know.
    static CStatus AreFrameIdsKnown(wchar_t const* path);

    /// The first frame with this id. Of comments only an English one with an empty description,
    /// or one that can't be converted, counts.
    /// Returns: whether there is one; `*frame` is null when there isn't.
    bool GetExistingFrame(char const* id, CID3Frame** frame) const;

    /// The frame's text up to its first 0.
    /// Returns: `kStatusFailure` without such a frame or without readable text.
    CStatus GetString(char const* id, CString& value) const;

    /// Gives the frame this text, making it when there is none and `value` isn't empty.
    /// Returns: `kStatusNothing` when nothing had to change.
    CStatus SetString(char const* id, wchar_t const* value);

    /// Leaves the frame that `SetString` would take out of the tag that is written.
    /// Returns: `kStatusNothing` when there is none.
    CStatus TakeOut(char const* id);

    /// Data of the first private frame of this owner. With a null `data` only the size is told;
    /// otherwise `data` must have room for it.
    /// Returns: `kStatusFailure` without such a frame, or when it holds no data.
    CStatus GetPrivateBinaryData(char const* owner, std::uint8_t* data, std::uint32_t* size) const;

    CStatus SetPrivateBinaryData(char const* owner, std::uint8_t const* data, std::uint32_t size);

    /// Bytes of all frames with their headers.
    std::uint32_t GetPendingBodySize() const;

    /// Returns: `kStatusOk` when the file can be opened for writing, else `kStatusNothing`.
    static CStatus IsFileUpdateable(wchar_t const* path);

    /// The path with the extension "MP~".
    CString CreateTempFileName() const;

    /// Writes the tag back: in place when it fits into the old one's bytes, otherwise through a
    /// new file that takes the old one's place in one step; then `*rewritten` becomes true. In
    /// place, a change that a kill could cut in the middle goes through a new file of the same
    /// length too, if there can be one; `*rewritten` stays false, for the audio stays where it
    /// was. A symbolic link stays one, and its target is written.
    /// Returns: `kStatusNothing` when nothing was changed; `kStatusFailure`, the file being as it
    /// was, when it couldn't be written: `GetWriteProblem` says why.
    CStatus UpdateFile(bool* rewritten);

    /// Why the last `UpdateFile` failed.
    [[nodiscard]] EWriteProblem GetWriteProblem() const { return m_eProblem; }

    /// True when the tag holds bytes that reading didn't reach, or took for what they aren't, and
    /// that writing would throw away.
    [[nodiscard]] bool HasUnreachedData() const { return m_bUnreachedData; }

    /// True when the last `OpenFile` failed for want of memory.
    [[nodiscard]] bool HadNoMemory() const { return m_bNoMemory; }

    /// True when a version 2.2 frame has an id of neither table; only with `m_bEveryId`.
    [[nodiscard]] bool HasUnknownIds() const { return m_bUnknownIds; }

    /// Ids that only the wider table knows, each once, in the order of their first frames.
    [[nodiscard]] std::vector<CWiderId> const& GetWiderIds() const { return m_vWiderIds; }

    /// True when the frame that `SetString` would take bears the mark by which it is dropped: its
    /// new text would go with it.
    [[nodiscard]] bool WouldDrop(char const* id) const;

    /// Major version and revision as they stand on disk, also of a tag that isn't read; 0 without.
    [[nodiscard]] std::uint8_t GetVersion() const { return m_nVersion; }
    [[nodiscard]] std::uint8_t GetRevision() const { return m_nRevision; }

    /// Bytes of the tag on disk by its header, which they include; 0 without a tag that is read.
    [[nodiscard]] std::uint32_t GetTagSize() const { return m_nTagBytes; }

    [[nodiscard]] CPtrContainer<CID3Frame> const& GetFrames() const { return m_frames; }

    /// Copies the four characters of the version 2.3 id, without a terminator. An id without one
    /// ends the process with an assertion.
    /// Returns: 1.
    static std::int32_t MapV2FrameIdToV3(char const* v2id, char* v3id);

    // The number forms; see `IDTag/TagBytes.h`.
    static std::uint32_t PByteToDword(std::uint8_t const* bytes) { return ReadBigEndian(bytes); }
    static void DwordToPByte(std::uint32_t value, std::uint8_t* bytes) {
        WriteBigEndian(value, bytes);
    }
    static std::uint32_t SparsePByteToDword(std::uint8_t const* bytes) {
        return ReadSyncsafe(bytes);
    }
    static void DwordToSparsePByte(std::uint32_t value, std::uint8_t* bytes) {
        WriteSyncsafe(value, bytes);
    }
    static void DecodeUnsynchronization(std::uint8_t* buffer, std::uint32_t* length) {
        RemoveUnsynchronization(buffer, length);
    }

private:
    CStatus TakeFrames(CRawTag const& tag);
    bool TakeFrame(CRawTag const& tag, CFoundFrame const& found);
    CID3Frame* AppendFrame(char const* id);
    CID3Frame* FindPrivateFrame(char const* owner) const;
    [[nodiscard]] bool IsDropped(ID3V2_3_FRAMEHEADER const& header) const;
    [[nodiscard]] std::uint64_t PendingBytes() const;
    [[nodiscard]] std::vector<std::uint8_t> MakeTag(std::uint32_t tagBytes) const;
    EWriteProblem WriteTag(bool* rewritten);
    EWriteProblem ReadAgain(int file, std::vector<std::uint8_t>& oldTag) const;

    CTagRules m_rules;
    CPtrContainer<CID3Frame> m_frames;
    std::vector<CWiderId> m_vWiderIds;
    CString m_sPath;
    CID3Frame const* m_pTakenOut = nullptr; // one of the frames
    bool m_bModified = false;
    std::uint32_t m_nTagBytes = 0;
    std::uint8_t m_nVersion = 0;
    std::uint8_t m_nRevision = 0;
    bool m_bReadable = false; // the last `OpenFile` didn't fail
    bool m_bUnreachedData = false;
    bool m_bUnknownIds = false;
    bool m_bNoMemory = false;
    CDigest m_digest;
    EWriteProblem m_eProblem = EWriteProblem::None;
};
