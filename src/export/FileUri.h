// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <string_view>

/// `path`, which is bytes, as it stands in a URI: every byte outside the unreserved set of RFC 3986
/// and "/" is percent-encoded.
std::string PercentEncoded(std::string_view path);

/// The file URI of `path`, made absolute by the working folder, which spells every name exactly.
std::string FileUri(std::string const& path);
