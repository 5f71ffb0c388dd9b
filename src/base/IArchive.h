// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// Byte stream through which records persist themselves as memory images of their values, so the
/// byte order is the machine's.
class IArchive {
public:
    virtual ~IArchive() = default;

    /// Non-zero while the archive is written, 0 while it is read.
    virtual std::int32_t IsStoring() = 0;

    /// Appends `length` bytes.
    virtual void Write(void const* data, std::uint32_t length) = 0;

    /// Fills `length` bytes. Callers pass 0 as the flag. A short read leaves the rest untouched.
    virtual void Read(void* data, std::uint32_t length, std::int32_t flag) = 0;

protected:
    IArchive() = default;
    IArchive(IArchive const&) = default;
    IArchive& operator=(IArchive const&) = default;
};
