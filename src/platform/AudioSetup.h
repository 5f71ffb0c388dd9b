// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// Sets what the decoding library has once per process: its messages are kept for the report of
/// the file they are about instead of being printed, and one block of memory is at most 256 MB.
/// For a program's `main`, before any thread; the decoder works without it, but then the library
/// prints, and a report has no detail.
void SetUpAudio();

/// The decoding library's version, by which samples may differ.
std::string DecoderVersion();
