// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/MemBuffer.h"

#include <cstdlib>
#include <cstring>

std::uint8_t* CMemBuffer::AllocMem(std::uint32_t size) {
    FreeMem();
    m_pMem = static_cast<std::uint8_t*>(std::malloc(size));
    if (m_pMem != nullptr) {
        m_nSize = size;
    }
    return m_pMem;
}

void CMemBuffer::FreeMem() {
    std::free(m_pMem);
    m_pMem = nullptr;
    m_nSize = 0;
}

std::uint8_t* CMemBuffer::GetMem(std::uint32_t* size) {
    *size = m_nSize;
    return m_pMem;
}

CStatus CMemBuffer::CopyTo(std::uint8_t* dest, std::uint32_t* size) const {
    if (dest != nullptr) {
        if (m_nSize > *size) {
            return kStatusFailure;
        }
        if (m_nSize != 0) {
            std::memcpy(dest, m_pMem, m_nSize);
        }
    }
    *size = m_nSize;
    return kStatusOk;
}

CStatus CMemBuffer::CopyFrom(std::uint8_t const* source, std::uint32_t size) {
    // Deliberate: the block never shrinks; a shorter copy keeps the old size and the bytes behind
    // the copy.
    if (m_nSize < size) {
        AllocMem(size);
    }
    if (size > m_nSize || m_pMem == nullptr) {
        return kStatusFailure;
    }
    if (size != 0) {
        std::memcpy(m_pMem, source, size);
    }
    return kStatusOk;
}
