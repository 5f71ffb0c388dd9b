// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "export/xml/XmlText.h"

#include "base/Utf16.h"

#include <algorithm>
#include <pugixml.hpp>
#include <sstream>
#include <string_view>

std::string XmlText(std::string text) {
    // Standard: XML 1.0, section 2.2: no controls but these three, no U+FFFE and U+FFFF.
    constexpr unsigned char kFirstPrintable = 0x20;
    constexpr unsigned char kLastAscii = 0x7F;
    bool const isUtf8 = IsUtf8(text);
    for (char& c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < kFirstPrintable && c != '\t' && c != '\n' && c != '\r') {
            c = ' ';
        } else if (byte > kLastAscii && !isUtf8) {
            c = '?';
        }
    }
    for (std::string_view const none : {"\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
        for (std::size_t at = text.find(none); at != std::string::npos; at = text.find(none)) {
            text[at] = ' ';
            text.erase(at + 1, none.size() - 1);
        }
    }
    return text;
}

std::string TextOf(pugi::xml_document const& document) {
    std::ostringstream text;
    document.save(text, "  ", pugi::format_default, pugi::encoding_utf8);
    return text.str();
}
