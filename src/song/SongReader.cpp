// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "song/SongReader.h"

#include "platform/AudioStream.h"

#include <exception>
#include <span>

CSongReader::CSongReader(CAudioStream* stream, bool readAhead)
    : m_pStream(stream), m_format(nullptr, stream != nullptr ? stream->GetCount() : 0) {
    if (readAhead && stream != nullptr) {
        try {
            m_pAhead = std::make_unique<CReadAhead>(*stream);
        } catch (std::exception const&) {
            m_pAhead = nullptr; // no thread or no memory: one after the other does as well
        }
    }
}

CStatus CSongReader::LoadPcm(std::uint8_t* dest, std::int64_t byteOffset, std::uint32_t byteCount) {
    if (m_pStream == nullptr || byteOffset != m_nOffset) {
        return kStatusFailure;
    }
    m_nOffset += byteCount;
    std::span const samples(reinterpret_cast<float*>(dest), byteCount / sizeof(float));
    CStatus const status = m_pAhead != nullptr ? m_pAhead->Read(samples) : m_pStream->Read(samples);
    std::int64_t streamBytes = 0;
    (void)m_format.GetStreamLength(&streamBytes);
    if (status != kStatusOk || m_nOffset < streamBytes) {
        return status;
    }
    if (m_pAhead == nullptr) {
        return m_pStream->Finish();
    }
    CStatus const end = m_pAhead->Finish();
    m_pAhead.reset(); // with its memory, before the stages behind the pass take theirs
    return end;
}
