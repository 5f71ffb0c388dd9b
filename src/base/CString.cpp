// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/CString.h"

#include "base/Utf16.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <utility>

namespace {

// Deliberate: a character past U+FFFF is cut to its low 16 bits, not made into a pair, because
// every `wchar_t` stands for one unit.
std::u16string UnitsOf(wchar_t const* text) {
    std::u16string units;
    if (text != nullptr) {
        std::size_t const length = std::wcslen(text);
        units.resize(length);
        std::transform(text, text + length, units.begin(),
                       [](wchar_t c) { return static_cast<char16_t>(c); });
    }
    return units;
}

std::string_view ViewOf(char const* text) {
    return text != nullptr ? std::string_view(text) : std::string_view();
}

} // namespace

CString::CString(char const* utf8) : CString(FromUtf8(ViewOf(utf8))) {
}

CString::CString(wchar_t const* text) : m_sText(UnitsOf(text)) {
}

CString::CString(std::u16string_view units) : m_sText(units) {
}

CString::CString(CString const& other) : m_sText(other.m_sText) {
}

CString::CString(CString&& other) noexcept : m_sText(std::move(other.m_sText)) {
    other.m_sText.clear();
}

CString& CString::operator=(CString const& other) {
    if (this != &other) {
        m_sText = other.m_sText;
    }
    return *this;
}

CString& CString::operator=(CString&& other) noexcept {
    if (this != &other) {
        m_sText = std::move(other.m_sText);
        other.m_sText.clear();
    }
    return *this;
}

CString& CString::operator=(wchar_t const* text) {
    m_sText = UnitsOf(text);
    return *this;
}

CString CString::FromUtf8(std::string_view utf8) {
    CString text;
    text.m_sText = DecodeUtf8(utf8).value_or(std::u16string());
    return text;
}

std::string CString::ToUtf8() const {
    return EncodeUtf8(m_sText);
}

CString CString::FromPath(std::string_view bytes) {
    CString text;
    text.m_sText = DecodePath(bytes);
    return text;
}

std::string CString::ToPath() const {
    return EncodePath(m_sText);
}

CString::operator wchar_t const*() const {
    std::size_t const needed = m_sText.size() + 1;
    if (m_vWide.size() < needed) {
        m_vWide.resize(needed);
    }
    std::transform(m_sText.begin(), m_sText.end(), m_vWide.begin(),
                   [](char16_t unit) { return static_cast<wchar_t>(unit); });
    m_vWide[m_sText.size()] = L'\0';
    return m_vWide.data();
}

bool CString::operator==(char const* utf8) const {
    return *this == CString(utf8);
}

bool CString::operator==(wchar_t const* text) const {
    return m_sText == UnitsOf(text);
}

CString CString::operator+(wchar_t const* text) const {
    CString sum(*this);
    sum += text;
    return sum;
}

CString CString::operator+(CString const& text) const {
    CString sum(*this);
    sum += text;
    return sum;
}

CString& CString::operator+=(wchar_t const* text) {
    m_sText += UnitsOf(text);
    return *this;
}

CString& CString::operator+=(CString const& text) {
    m_sText += text.m_sText;
    return *this;
}

std::int32_t CString::Find(wchar_t const* text, std::uint32_t start) const {
    std::u16string const wanted = UnitsOf(text);
    if (wanted.empty() || start >= m_sText.size()) {
        return -1;
    }
    std::size_t const found = m_sText.find(wanted, start);
    return found == std::u16string::npos ? -1 : static_cast<std::int32_t>(found);
}

std::int32_t CString::ReverseFind(char16_t unit) const noexcept {
    std::size_t const found = m_sText.rfind(unit);
    return found == std::u16string::npos ? -1 : static_cast<std::int32_t>(found);
}

CString CString::Mid(std::uint32_t start, std::uint32_t count) const {
    if (start >= m_sText.size()) {
        return {};
    }
    // Deliberate: a count of 0 asks for all the rest, not for nothing.
    return CString(Units().substr(start, count == 0 ? std::u16string_view::npos : count));
}

CString CString::Left(std::uint32_t count) const {
    return CString(Units().substr(0, count));
}

CString CString::Right(std::uint32_t count) const {
    return CString(Units().substr(m_sText.size() - std::min<std::size_t>(count, m_sText.size())));
}

void CString::MakeLower() {
    m_sText = LowerCase(m_sText);
}

void CString::PathAppend(wchar_t const* component) {
    std::u16string const units = UnitsOf(component);
    if (units.empty()) {
        return;
    }
    if (m_sText.empty()) {
        m_sText = units;
        return;
    }
    std::size_t const lastKept = m_sText.find_last_not_of(u'/');
    m_sText.resize(lastKept == std::u16string::npos ? 0 : lastKept + 1);
    m_sText += u'/';
    std::size_t const firstKept = units.find_first_not_of(u'/');
    if (firstKept != std::u16string::npos) {
        m_sText.append(units, firstKept);
    }
}

// Deliberate: the copy routines ignore the room that they are told; the caller's buffer must be
// large enough.
std::int32_t CStringUtil::strcpy_s(char* dst, std::size_t /*size*/, char const* src) {
    std::memcpy(dst, src, std::strlen(src) + 1);
    return 0;
}

std::int32_t CStringUtil::strncpy_s(char* dst, std::size_t /*size*/, char const* src,
                                    std::size_t count) {
    std::size_t const length = strnlen(src, count);
    std::memcpy(dst, src, length);
    std::memset(dst + length, 0, count - length);
    return 0;
}

std::int32_t CStringUtil::wcscpy_s(wchar_t* dst, std::size_t /*size*/, wchar_t const* src) {
    std::wcscpy(dst, src);
    return 0;
}

std::int32_t CStringUtil::wcsncpy_s(wchar_t* dst, std::size_t /*size*/, wchar_t const* src,
                                    std::size_t count) {
    std::wcsncpy(dst, src, count);
    return 0;
}
