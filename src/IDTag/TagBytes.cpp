// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "IDTag/TagBytes.h"

std::uint32_t ReadBigEndian(std::uint8_t const* bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        value = (value << 8U) | bytes[i];
    }
    return value;
}

void WriteBigEndian(std::uint32_t value, std::uint8_t* bytes) {
    for (unsigned i = 0; i < 4; ++i) {
        bytes[i] = static_cast<std::uint8_t>(value >> (24U - 8U * i));
    }
}

std::uint32_t ReadSyncsafe(std::uint8_t const* bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        // Deliberate: a byte above 127 is added whole, not masked; only writing masks.
        value = (value << 7U) + bytes[i];
    }
    return value;
}

void WriteSyncsafe(std::uint32_t value, std::uint8_t* bytes) {
    for (unsigned i = 0; i < 4; ++i) {
        bytes[i] = static_cast<std::uint8_t>((value >> (21U - 7U * i)) & 0x7FU);
    }
}

void RemoveUnsynchronization(std::uint8_t* bytes, std::uint32_t* length) {
    std::uint32_t kept = 0;
    bool afterFf = false;
    for (std::uint32_t i = 0; i < *length; ++i) {
        std::uint8_t const byte = bytes[i];
        if (!(afterFf && byte == 0x00)) {
            bytes[kept++] = byte;
        }
        afterFf = byte == 0xFF;
    }
    *length = kept;
}
