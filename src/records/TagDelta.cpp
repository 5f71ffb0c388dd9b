// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// A delta is a row of pieces: the number of new bytes, these bytes, the number of copied bytes, and
// where they begin in the other tag. Numbers have seven bits a byte, the lowest first; the top bit
// says that more follows.

#include "records/TagDelta.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <unordered_map>

namespace {

constexpr std::size_t kBlockBytes = 16;        // Fixed: shorter pieces aren't worth their numbers.
constexpr std::size_t kMostBlocks = 1U << 16U; // Tuned: milliseconds to list, whatever the size.
constexpr unsigned kNumberBits = 7;            // Fixed: bits of a number in each byte.
constexpr std::uint8_t kMore = 0x80;           // Fixed: another byte of the number follows.
constexpr unsigned kMostShift = 56; // Derived: 9 bytes of 7 bits are enough for any size.

using ByteView = std::span<std::uint8_t const>;
using Blocks = std::unordered_map<std::uint64_t, std::size_t>;

void PutNumber(std::vector<std::uint8_t>& delta, std::uint64_t number) {
    for (; number >= kMore; number >>= kNumberBits) {
        delta.push_back(static_cast<std::uint8_t>(number | kMore));
    }
    delta.push_back(static_cast<std::uint8_t>(number));
}

bool TakeNumber(ByteView& delta, std::uint64_t& number) {
    number = 0;
    for (unsigned shift = 0; !delta.empty() && shift <= kMostShift; shift += kNumberBits) {
        std::uint8_t const byte = delta.front();
        delta = delta.subspan(1);
        number |= static_cast<std::uint64_t>(byte & ~kMore) << shift;
        if ((byte & kMore) == 0) {
            return true;
        }
    }
    return false;
}

/// A key by which blocks are found again; equal keys need not mean equal blocks.
std::uint64_t KeyOf(ByteView bytes, std::size_t offset) {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
    std::memcpy(&first, &bytes[offset], sizeof first);
    std::memcpy(&second, &bytes[offset + sizeof first], sizeof second);
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U; // Derived: 2^64 over the golden ratio.
    return (first * kSpread) ^ second;
}

/// Of a large tag not every block: what is worth copying there is larger than what lies between.
Blocks BlocksOf(ByteView from) {
    Blocks blocks;
    std::size_t const step = std::max(kBlockBytes, from.size() / kMostBlocks);
    for (std::size_t i = 0; i + kBlockBytes <= from.size(); i += step) {
        blocks.try_emplace(KeyOf(from, i), i);
    }
    return blocks;
}

/// A piece that both have.
struct CPiece {
    std::size_t m_nFrom = 0;
    std::size_t m_nWanted = 0;
    std::size_t m_nBytes = 0;
};

/// The piece around a block that both may have, no further back than `start` in `wanted`.
CPiece Grown(ByteView from, ByteView wanted, CPiece piece, std::size_t start) {
    while (piece.m_nFrom > 0 && piece.m_nWanted > start &&
           from[piece.m_nFrom - 1] == wanted[piece.m_nWanted - 1]) {
        --piece.m_nFrom;
        --piece.m_nWanted;
    }
    ByteView const rest = from.subspan(piece.m_nFrom);
    ByteView const wantedRest = wanted.subspan(piece.m_nWanted);
    piece.m_nBytes =
        static_cast<std::size_t>(std::ranges::mismatch(rest, wantedRest).in1 - rest.begin());
    return piece;
}

void PutPiece(std::vector<std::uint8_t>& delta, ByteView added, CPiece const& piece) {
    PutNumber(delta, added.size());
    delta.insert(delta.end(), added.begin(), added.end());
    PutNumber(delta, piece.m_nBytes);
    PutNumber(delta, piece.m_nFrom);
}

} // namespace

std::vector<std::uint8_t> MakeDelta(std::span<std::uint8_t const> from,
                                    std::span<std::uint8_t const> wanted) {
    Blocks const blocks = BlocksOf(from);
    std::vector<std::uint8_t> delta;
    std::size_t start = 0; // the first byte that isn't in the delta yet
    for (std::size_t i = 0; i + kBlockBytes <= wanted.size();) {
        auto const found = blocks.find(KeyOf(wanted, i));
        CPiece const piece =
            found != blocks.end() ? Grown(from, wanted, {found->second, i, 0}, start) : CPiece();
        if (piece.m_nBytes < kBlockBytes) {
            ++i;
            continue;
        }
        PutPiece(delta, wanted.subspan(start, piece.m_nWanted - start), piece);
        start = piece.m_nWanted + piece.m_nBytes;
        i = start;
    }
    if (start < wanted.size()) {
        PutPiece(delta, wanted.subspan(start), {});
    }
    return delta;
}

std::optional<std::vector<std::uint8_t>> ApplyDelta(std::span<std::uint8_t const> from,
                                                    std::span<std::uint8_t const> delta,
                                                    std::uint64_t wantedBytes) {
    std::vector<std::uint8_t> made;
    while (!delta.empty()) {
        std::uint64_t added = 0;
        if (!TakeNumber(delta, added) || added > delta.size()) {
            return std::nullopt;
        }
        made.insert(made.end(), delta.begin(), delta.begin() + static_cast<std::ptrdiff_t>(added));
        delta = delta.subspan(added);
        std::uint64_t copied = 0;
        std::uint64_t offset = 0;
        bool const isWhole =
            TakeNumber(delta, copied) && TakeNumber(delta, offset) && offset <= from.size() &&
            copied <= from.size() - offset &&
            copied <= wantedBytes - std::min<std::uint64_t>(wantedBytes, made.size());
        if (!isWhole) {
            return std::nullopt;
        }
        ByteView const piece = from.subspan(offset, copied);
        made.insert(made.end(), piece.begin(), piece.end());
    }
    return made.size() == wantedBytes ? std::optional(std::move(made)) : std::nullopt;
}
