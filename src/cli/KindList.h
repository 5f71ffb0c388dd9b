// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "song/AudioKinds.h"

#include <string>

/// The kinds that the value of `option` names: extensions or types, separated by commas. A word
/// that names none is the parser's error.
/// "all" names all of them.
CKindChoice KindsOf(char const* option, std::string const& names);
