// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"
#include "base/FileIdentity.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

/// One change of a tag, with all that is needed to go back.
struct CTagChange {
    CString m_sPath;        // of the file itself, no link
    CFileIdentity m_before; // the file as it is until then
    std::string m_sFrameId;
    std::optional<CString> m_textBefore;    // nothing: there is no such frame
    std::optional<CString> m_textAfter;     // nothing: the frame is taken out
    std::span<std::uint8_t const> m_oldTag; // the file's first bytes, which give way
    std::span<std::uint8_t const> m_newTag; // what comes in their place; the rest follows it
    bool m_bHasBytes = true;                // false: both are empty, and the way back is by text
};

/// Whoever wants to know of a tag's change before it happens, so that nothing is lost with a
/// process that ends in the middle. One witness sees one write.
/// Thread: the writer's, with the file locked.
class ITagWitness {
public:
    virtual ~ITagWitness() = default;

    /// Everything has been looked at, and not a byte is written. What `change` points to is gone
    /// once this returns.
    virtual void OnWriting(CTagChange const& change) = 0;

    /// The end of what `OnWriting` told of: the file afterwards, nothing when it is as it was.
    virtual void OnWritten(std::optional<CFileIdentity> const& after) = 0;

protected:
    ITagWitness() = default;
    ITagWitness(ITagWitness const&) = delete;
    ITagWitness& operator=(ITagWitness const&) = delete;
};
