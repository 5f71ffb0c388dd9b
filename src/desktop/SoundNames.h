// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"

#include <QString>
#include <string>

/// Names that are the same in every language.
/// Thread: any.

/// The format of a file that was heard: "MP3", "ALAC"; empty when it is unknown.
QString KindName(CDecodeReport const& report);

/// The Camelot code of a key as tags have it: "8A" for "Am"; empty when it names none.
QString CamelotName(std::string const& key);
