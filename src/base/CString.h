// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Text as a sequence of UTF-16 units. A unit is a character here: positions and counts are in
/// units, and nothing keeps the two halves of a surrogate pair together.
/// `wchar_t` has 32 bits and carries one unit each; text pointers end at the first 0, and a null
/// pointer stands for empty text.
/// Thread: one at a time, for reading too, because the conversion to `wchar_t const*` caches.
class CString {
public:
    CString() = default;

    /// Decodes UTF-8. Text that isn't valid UTF-8 gives an empty string.
    CString(char const* utf8);

    /// Takes the low 16 bits of every character.
    CString(wchar_t const* text);

    /// Takes the units as they are; they may contain 0 and lone surrogates.
    explicit CString(std::u16string_view units);

    /// Copies and moves carry the text alone: a pointer from the conversion below stays valid
    /// when its string is assigned to.
    CString(CString const& other);
    CString(CString&& other) noexcept;
    CString& operator=(CString const& other);
    CString& operator=(CString&& other) noexcept;
    CString& operator=(wchar_t const* text);
    ~CString() = default;

    /// Decodes UTF-8 that may contain 0 bytes. Invalid UTF-8 gives an empty string.
    [[nodiscard]] static CString FromUtf8(std::string_view utf8);

    /// UTF-8 for a person or a document; a lone surrogate becomes U+FFFD.
    [[nodiscard]] std::string ToUtf8() const;

    /// A file's path from any bytes: valid UTF-8 is decoded, every other byte becomes the lone
    /// surrogate U+DC00 + byte. `ToPath` gives the same bytes back.
    [[nodiscard]] static CString FromPath(std::string_view bytes);

    /// The bytes that the file system knows. The lone surrogates U+DC80 to U+DCFF become one byte
    /// each, any other lone surrogate the three bytes that UTF-8's pattern has for it.
    [[nodiscard]] std::string ToPath() const;

    /// The text with a 0 behind it, one unit per `wchar_t`. Valid until the next conversion of
    /// this string or its end.
    operator wchar_t const*() const;

    [[nodiscard]] std::u16string_view Units() const noexcept { return m_sText; }
    [[nodiscard]] std::uint32_t GetLength() const noexcept {
        return static_cast<std::uint32_t>(m_sText.size());
    }
    [[nodiscard]] bool IsEmpty() const noexcept { return m_sText.empty(); }

    /// Exact comparison of the units, upper and lower case apart.
    bool operator==(CString const& other) const noexcept { return m_sText == other.m_sText; }
    bool operator==(char const* utf8) const;
    bool operator==(wchar_t const* text) const;

    /// Order of the units, for sorted lists and maps.
    auto operator<=>(CString const& other) const noexcept { return m_sText <=> other.m_sText; }

    /// A text is no condition: `if (text)` would ask whether its pointer is null. Use `IsEmpty`.
    explicit operator bool() const = delete;

    CString operator+(wchar_t const* text) const;
    CString operator+(CString const& text) const;
    CString& operator+=(wchar_t const* text);
    CString& operator+=(CString const& text);

    /// Position of the first occurrence of `text` at or after `start`.
    /// Returns: -1 when there is none, when `text` is empty, or when `start` is at or past the end.
    [[nodiscard]] std::int32_t Find(wchar_t const* text, std::uint32_t start = 0) const;

    /// Position of the last occurrence of one unit, -1 when there is none.
    [[nodiscard]] std::int32_t ReverseFind(char16_t unit) const noexcept;

    /// `count` units from `start`, fewer at the end of the text; a count of 0 means all the rest.
    [[nodiscard]] CString Mid(std::uint32_t start, std::uint32_t count) const;

    /// The first or last `count` units; the whole text when it is shorter.
    [[nodiscard]] CString Left(std::uint32_t count) const;
    [[nodiscard]] CString Right(std::uint32_t count) const;

    /// Lower-cases each code point by Unicode's simple mapping, the same in every locale. Lone
    /// surrogates stay.
    void MakeLower();

    /// Removes all units.
    void Empty() noexcept { m_sText.clear(); }

    /// Joins a path component on with exactly one "/" between the two. An empty text takes the
    /// component as it is, and an empty component changes nothing.
    void PathAppend(wchar_t const* component);

private:
    std::u16string m_sText;
    mutable std::vector<wchar_t> m_vWide; // Grows when needed, never shrinks.
};

/// Copy routines under their checked names. Each returns 0.
class CStringUtil {
public:
    static std::int32_t strcpy_s(char* dst, std::size_t size, char const* src);
    static std::int32_t strncpy_s(char* dst, std::size_t size, char const* src, std::size_t count);
    static std::int32_t wcscpy_s(wchar_t* dst, std::size_t size, wchar_t const* src);
    static std::int32_t wcsncpy_s(wchar_t* dst, std::size_t size, wchar_t const* src,
                                  std::size_t count);
};
