// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/VectorArchive.h"

#include <algorithm>
#include <cstring>
#include <utility>

CVectorArchive::CVectorArchive(std::vector<std::uint8_t> bytes)
    : m_bStoring(false), m_vBytes(std::move(bytes)) {
}

void CVectorArchive::Write(void const* data, std::uint32_t length) {
    auto const* const bytes = static_cast<std::uint8_t const*>(data);
    m_vBytes.insert(m_vBytes.end(), bytes, bytes + length);
}

void CVectorArchive::Read(void* data, std::uint32_t length, std::int32_t /*flag*/) {
    std::size_t const taken = std::min<std::size_t>(length, m_vBytes.size() - m_nPos);
    if (taken > 0) {
        std::memcpy(data, m_vBytes.data() + m_nPos, taken);
        m_nPos += taken;
    }
}
