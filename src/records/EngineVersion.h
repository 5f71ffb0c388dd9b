// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// What results depend on beside the song: the code that reads, decodes and profiles, as it was
/// compiled, and the decoding library. Equal versions give equal results.
std::string EngineVersion();
