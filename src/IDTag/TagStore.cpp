// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The steps of a write: see that the name may be written; read the tag, and look at what lies
// behind it; see that nobody has put another text there; then let the tag write itself into the
// file that was looked at.

#include "IDTag/TagStore.h"

#include "IDTag/MacCFile.h"
#include "IDTag/MpegChain.h"
#include "IDTag/PosixFile.h"
#include "IDTag/TagTarget.h"

#include <fcntl.h>
#include <new>
#include <string>
#include <unistd.h>

namespace {

constexpr std::uint8_t kEncodingVersion = 4; // Standard: ID3v2.4.0 alone has the forms below.

// Standard: ID3v2.4.0 structure, section 4.1.2: the second byte of a frame's flags.
constexpr std::uint8_t kGrouped = 0x40;
constexpr std::uint8_t kCompressed = 0x08;
constexpr std::uint8_t kEncrypted = 0x04;
constexpr std::uint8_t kTellsDataLength = 0x01;
constexpr std::uint32_t kGroupBytes = 1;
constexpr std::uint32_t kDataLengthBytes = 4;

/// A frame as bytes.
struct CRawFrame {
    ID3V2_3_FRAMEHEADER m_header = {};
    std::uint8_t* m_pBody = nullptr;
    std::uint32_t m_nBytes = 0;
};

CRawFrame RawFrameOf(CID3Frame& frame) {
    CRawFrame raw;
    (void)frame.GetData(&raw.m_header, &raw.m_pBody, &raw.m_nBytes);
    return raw;
}

/// Text of a version 2.4 frame in one of the forms that version 2.3 doesn't know.
CStatus ReadEncodedText(CRawFrame raw, CString& text) {
    std::uint8_t const flags = raw.m_header.m_nFormatFlags;
    std::uint32_t const ahead = ((flags & kGrouped) != 0 ? kGroupBytes : 0) +
                                ((flags & kTellsDataLength) != 0 ? kDataLengthBytes : 0);
    if ((flags & (kCompressed | kEncrypted)) != 0 || raw.m_nBytes < ahead) {
        return kStatusFailure;
    }
    CID3Frame plain;
    CStatus const status = plain.SetData(&raw.m_header, raw.m_pBody + ahead, raw.m_nBytes - ahead);
    return status < 0 ? status : FrameTextOf(plain, text);
}

bool IsEncoded(CRawFrame const& raw) {
    constexpr std::uint8_t kForms = kGrouped | kCompressed | kEncrypted | kTellsDataLength;
    return (raw.m_header.m_nFormatFlags & kForms) != 0;
}

bool HasEncodedFrames(CID3Tag const& tag) {
    CID3Frame* frame = nullptr;
    for (std::uint32_t i = 0; tag.GetFrames().EnumItems(i, &frame); ++i) {
        if (tag.GetVersion() == kEncodingVersion && IsEncoded(RawFrameOf(*frame))) {
            return true;
        }
    }
    return false;
}

/// What speaks against the file at `path` before anything is read of it.
EWriteProblem ProblemOfFile(std::string const& path) {
    struct stat info = {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) {
        return EWriteProblem::NotWritable;
    }
    if (info.st_size > static_cast<off_t>(kLargestFileBytes)) {
        return EWriteProblem::FileTooLarge;
    }
    return EWriteProblem::None;
}

/// One write, step by step.
class CStore {
public:
    CStore(CString const& path, char const* frameId, CTagStoreOptions const& options)
        : m_sPath(path), m_sTarget(FileBehind(path)), m_pFrameId(frameId), m_options(options) {}

    /// `text`: nothing takes the frame out.
    EWriteProblem Run(std::optional<CString> const& text, CTagStoreReport& report) {
        EWriteProblem problem = LookAtName();
        if (problem == EWriteProblem::None) {
            problem = LookAtTag(report);
        }
        CID3Frame* frame = nullptr;
        bool const isThere = m_tag.GetExistingFrame(m_pFrameId, &frame);
        bool const isSame = text ? report.m_sTextBefore == *text : !isThere;
        if (problem != EWriteProblem::None || isSame) {
            return problem;
        }
        problem = LookAtContent();
        return problem == EWriteProblem::None ? Write(text, report) : problem;
    }

private:
    EWriteProblem LookAtName() const {
        if (!HasWrittenExtension(m_sPath)) {
            return EWriteProblem::OtherExtension;
        }
        if (!HasWrittenExtension(m_sTarget)) {
            return EWriteProblem::LinkTarget;
        }
        EWriteProblem const problem = ProblemOfFile(m_sTarget.ToPath());
        bool const isRefused =
            problem == EWriteProblem::None && !CTagTarget(m_sTarget).MayBeWritten();
        return isRefused ? EWriteProblem::NotWritable : problem;
    }

    EWriteProblem LookAtTag(CTagStoreReport& report) {
        std::optional<CFileIdentity> const seen = IdentityAt(m_sTarget.ToPath());
        if (!seen || (m_options.m_expected && !(*m_options.m_expected == *seen))) {
            return EWriteProblem::Changed;
        }
        WaitUntilChangesShow(*seen);
        m_rules.m_bEveryId = true;
        m_rules.m_bKeepMarked = m_options.m_bKeepMarked;
        m_rules.m_bKeepTime = m_options.m_bKeepTime;
        m_rules.m_bKeepVersion = m_options.m_bKeepVersion;
        m_rules.m_expected = seen;
        m_tag.SetRules(m_rules);
        if (m_tag.OpenFile(m_sTarget) < 0) {
            return m_tag.HadNoMemory() ? EWriteProblem::NoMemory : EWriteProblem::TagUnreadable;
        }
        report.m_nVersionBefore = m_tag.GetTagSize() > 0 ? m_tag.GetVersion() : std::uint8_t{0};
        (void)TagTextOf(m_tag, m_pFrameId, report.m_sTextBefore);
        bool const isOther =
            m_options.m_expectedText && !(*m_options.m_expectedText == report.m_sTextBefore);
        return isOther ? EWriteProblem::TempoChanged : EWriteProblem::None;
    }

    /// What speaks against a new tag: what would be lost with the old one, and what lies behind it.
    EWriteProblem LookAtContent() const {
        if (m_tag.HasUnknownIds() || (!m_options.m_bWiderIds && !m_tag.GetWiderIds().empty())) {
            return EWriteProblem::UnknownFrameId;
        }
        if (m_tag.HasUnreachedData() || m_tag.WouldDrop(m_pFrameId)) {
            return EWriteProblem::UnknownData;
        }
        if (m_options.m_bKeepVersion ? IsFrameEncoded() : HasEncodedFrames(m_tag)) {
            return EWriteProblem::EncodedFrames;
        }
        CDescriptor const file(
            ::open(m_sTarget.ToPath().c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
        if (!file.IsOpen()) {
            return EWriteProblem::NotWritable;
        }
        bool const isMp4 = IsMp4At(file.Get(), m_tag.GetTagSize());
        bool const isSound = m_options.m_bNeedsMpegChain
                                 ? HasMpegChain(file.Get(), m_tag.GetTagSize())
                                 : !HasOtherKind(file.Get(), m_tag.GetTagSize());
        // In another file, or one that was written meanwhile, the tag's size means nothing.
        if (IdentityOf(file.Get()) != m_rules.m_expected) {
            return EWriteProblem::Changed;
        }
        return isMp4     ? EWriteProblem::OtherFormat
               : isSound ? EWriteProblem::None
                         : EWriteProblem::NotMpegAudio;
    }

    /// True when the frame itself has a form that its new text wouldn't have.
    bool IsFrameEncoded() const {
        CID3Frame* frame = nullptr;
        return m_tag.GetVersion() == kEncodingVersion &&
               m_tag.GetExistingFrame(m_pFrameId, &frame) && IsEncoded(RawFrameOf(*frame));
    }

    EWriteProblem Write(std::optional<CString> const& text, CTagStoreReport& report) {
        LetWitnessSee(text, report);
        bool rewritten = false;
        (void)(text ? m_tag.SetString(m_pFrameId, *text) : m_tag.TakeOut(m_pFrameId));
        if (m_tag.UpdateFile(&rewritten) == kStatusOk) {
            report.m_bWritten = true;
            report.m_vConverted = m_tag.GetWiderIds();
            report.m_after = IdentityAt(m_sTarget.ToPath()).value_or(CFileIdentity());
        }
        if (m_bWitnessed) {
            m_options.m_pWitness->OnWritten(report.m_bWritten ? std::optional(report.m_after)
                                                              : std::nullopt);
        }
        return m_tag.GetWriteProblem();
    }

    void LetWitnessSee(std::optional<CString> const& text, CTagStoreReport const& report) {
        if (m_options.m_pWitness == nullptr) {
            return;
        }
        CID3Frame* frame = nullptr;
        std::optional<CString> before;
        if (m_tag.GetExistingFrame(m_pFrameId, &frame)) {
            before = report.m_sTextBefore;
        }
        m_rules.m_onWriting = [this, before, text](CFileIdentity const& identity, auto oldTag,
                                                   auto newTag) {
            m_bWitnessed = true;
            m_options.m_pWitness->OnWriting(
                {m_sTarget, identity, m_pFrameId, before, text, oldTag, newTag});
        };
        m_tag.SetRules(m_rules);
    }

    CString m_sPath;
    CString m_sTarget;
    char const* m_pFrameId;
    CTagStoreOptions const& m_options;
    CTagRules m_rules;
    CID3Tag m_tag;
    bool m_bWitnessed = false;
};

EWriteProblem RunStore(CString const& path, char const* frameId, std::optional<CString> const& text,
                       CTagStoreOptions const& options, CTagStoreReport* report) {
    CTagStoreReport ignored;
    try {
        return CStore(path, frameId, options).Run(text, report != nullptr ? *report : ignored);
    } catch (std::bad_alloc const&) {
        return EWriteProblem::NoMemory;
    }
}

} // namespace

CStatus FrameTextOf(CID3Frame& frame, CString& text) {
    constexpr std::uint8_t kUtf8 = 3; // Standard: ID3v2.4.0 structure, section 4.
    CRawFrame const raw = RawFrameOf(frame);
    bool const isUtf8 = raw.m_nBytes > 1 && raw.m_pBody[0] == kUtf8 &&
                        frame.IsFrameIdMatch(kCommentId) != kStatusOk;
    if (isUtf8) {
        std::string_view const bytes(reinterpret_cast<char const*>(raw.m_pBody) + 1,
                                     raw.m_nBytes - 1);
        text = CString::FromUtf8(bytes.substr(0, bytes.find('\0')));
    }
    if (isUtf8 && !text.IsEmpty()) {
        return kStatusOk;
    }
    std::wstring found;
    CStatus const status = frame.GetString(found);
    if (status >= 0) {
        text = found.c_str();
    }
    return status;
}

CStatus TagTextOf(CID3Tag const& tag, char const* frameId, CString& text) {
    CID3Frame* frame = nullptr;
    if (!tag.GetExistingFrame(frameId, &frame)) {
        return kStatusNothing;
    }
    CRawFrame const raw = RawFrameOf(*frame);
    bool const isEncoded = tag.GetVersion() == kEncodingVersion && IsEncoded(raw);
    CString found;
    CStatus const status = isEncoded ? ReadEncodedText(raw, found) : FrameTextOf(*frame, found);
    if (status < 0) {
        return kStatusNothing;
    }
    text = found;
    return kStatusOk;
}

EWriteProblem StoreTagText(CString const& path, char const* frameId, CString const& text,
                           CTagStoreOptions const& options, CTagStoreReport* report) {
    return RunStore(path, frameId, text, options, report);
}

EWriteProblem TakeOutTagText(CString const& path, char const* frameId,
                             CTagStoreOptions const& options, CTagStoreReport* report) {
    return RunStore(path, frameId, std::nullopt, options, report);
}

CStatus ReadTagText(CString const& path, char const* frameId, CString& text) {
    try {
        CID3Tag tag;
        CTagRules rules;
        rules.m_bEveryId = true;
        tag.SetRules(rules);
        CStatus const status = tag.OpenFile(path);
        return status == kStatusOk ? TagTextOf(tag, frameId, text) : status;
    } catch (std::bad_alloc const&) {
        return kStatusFailure;
    }
}
