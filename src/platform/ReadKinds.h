// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/DecodeProblem.h"

#include <string>
#include <string_view>

// What the decoding library may be asked for: everything else that it knows stays shut.

/// The containers that are opened, as the library's list of names.
std::string FormatList();

/// The decoders that are used, likewise. All are of sound.
std::string DecoderList();

/// What the library's name for a container stands for.
EContainer ContainerOf(std::string_view formatName);

/// True for a decoder of the list.
bool IsReadDecoder(std::string_view name);
