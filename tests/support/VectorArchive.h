// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/IArchive.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Archive over a vector of bytes: either collects what is written or gives out what it was made
/// with. Reads past the end give nothing.
class CVectorArchive final : public IArchive {
public:
    /// An archive to write to.
    CVectorArchive() = default;

    /// An archive to read `bytes` from.
    explicit CVectorArchive(std::vector<std::uint8_t> bytes);

    std::int32_t IsStoring() override { return m_bStoring ? 1 : 0; }
    void Write(void const* data, std::uint32_t length) override;
    void Read(void* data, std::uint32_t length, std::int32_t flag) override;

    [[nodiscard]] std::vector<std::uint8_t> const& GetBytes() const { return m_vBytes; }

private:
    bool m_bStoring = true;
    std::size_t m_nPos = 0;
    std::vector<std::uint8_t> m_vBytes;
};
