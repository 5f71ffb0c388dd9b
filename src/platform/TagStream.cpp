// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "platform/TagStream.h"

#include "platform/TagSeek.h"

#include <algorithm>

namespace {

constexpr std::int64_t kMostReadBytes = std::int64_t{64} << 20U; // Fixed: covers of any usual size.
// Fixed: every box within a box costs a read and a piece of the stack: 40,000 of them fit into the
// usual 8 MB of it, 80,000 don't.
constexpr std::int64_t kMostReads = 10'000;

} // namespace

bool CTagStream::IsUsedUp() const {
    return m_nBytesRead > kMostReadBytes || m_nReads > kMostReads;
}

TagLib::ByteVector CTagStream::readBlock(TagSize length) {
    ++m_nReads;
    std::int64_t const rest = std::max<std::int64_t>(this->length() - m_nPosition, 0);
    auto const wanted = static_cast<std::int64_t>(
        std::min<std::uint64_t>(length, static_cast<std::uint64_t>(rest)));
    m_nBytesRead += wanted;
    if (wanted == 0 || IsUsedUp() || m_source.Seek(m_nBegin + m_nPosition) < 0) {
        return {};
    }
    TagLib::ByteVector block(static_cast<unsigned>(wanted), 0);
    std::int64_t done = 0;
    std::int64_t count = 1;
    while (done < wanted && count > 0) {
        count = m_source.Read(reinterpret_cast<std::uint8_t*>(block.data()) + done,
                              static_cast<std::size_t>(wanted - done));
        done += std::max<std::int64_t>(count, 0);
    }
    block.resize(static_cast<unsigned>(done));
    m_nPosition += done;
    return block;
}

void CTagStream::seek(TagOffset offset, Position position) {
    m_nPosition = SoughtPlace(*this, offset, position);
}

/// Once all that may be read is read, the file seems empty: every loop of the library's ends.
TagOffset CTagStream::length() {
    return IsUsedUp() ? 0 : std::max<std::int64_t>(m_source.GetSize() - m_nBegin, 0);
}
