// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace pugi {
class xml_document;
}

/// `text` as XML 1.0 may hold it: characters that it has no way of writing become spaces, and all
/// bytes beyond ASCII question marks where the text isn't UTF-8.
[[nodiscard]] std::string XmlText(std::string text);

/// The document with its declaration, indented by two spaces.
[[nodiscard]] std::string TextOf(pugi::xml_document const& document);
