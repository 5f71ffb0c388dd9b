// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// The absolute path without links of what `path` names; of a name that isn't there, the absolute
/// path by its folder's.
std::string RealPath(std::string const& path);
