// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// An ID3v2 tag read as the standards have it, for showing to people: every encoding, every form of
/// a frame but compressed and encrypted ones, from any place of a file. `CID3Tag` keeps to rules of
/// its own beside it.
/// Thread: any.
class CTagReading {
public:
    /// `tag`: header and body of a tag of version 2.2, 2.3 or 2.4. Anything else has no texts.
    explicit CTagReading(std::span<std::uint8_t const> tag) : CTagReading(tag, false) {}

    /// Every frame's id, and its texts with zeros between or its body, whatever form it has in the
    /// tag.
    static std::vector<std::pair<std::string, std::string>>
    Frames(std::span<std::uint8_t const> tag) {
        return CTagReading(tag, true).m_vFrames;
    }

    /// The texts of the first frame with this version 2.3 id, as UTF-8, without empty ones.
    [[nodiscard]] std::vector<std::string> Texts(std::string_view id) const;

    /// The texts of the user's frames ("TXXX") with this description, ASCII letters in either case.
    [[nodiscard]] std::vector<std::string> UserTexts(std::string_view description) const;

    /// True when no frame is compressed, encrypted or made of further frames: nothing that another
    /// reader would have to unfold.
    [[nodiscard]] bool IsPlain() const { return m_bPlain; }

private:
    struct CText {
        std::string m_sId;
        std::vector<std::string> m_vTexts; // UTF-8, empty ones too
    };

    CTagReading(std::span<std::uint8_t const> tag, bool keepsFrames);
    void Walk(std::uint8_t version, std::span<std::uint8_t const> body);
    void Take(std::uint8_t version, std::string_view id, unsigned flags,
              std::span<std::uint8_t const> body);

    bool m_bKeepsFrames;
    std::vector<CText> m_vTexts;
    std::vector<std::pair<std::string, std::string>> m_vFrames;
    std::uint8_t m_nEveryForm = 0; // form flags that every frame has
    bool m_bPlain = true;
};

/// The texts of a text frame's body (encoding, texts with zeros between) as UTF-8. Bytes that
/// belie their encoding are taken as Latin-1.
std::vector<std::string> DecodeTexts(std::span<std::uint8_t const> body);

/// UTF-8 for text that may be that already, and is Latin-1 otherwise.
std::string Utf8OrLatin1(std::string_view bytes);
