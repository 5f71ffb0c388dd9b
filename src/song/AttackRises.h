// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <span>
#include <vector>

/// How strongly something sets in at each step of `levels` (CBeatCurves::m_vAttack), in steps of a
/// level: by how much it is louder than all of the last 9 ms, and than what lies 18 dB below the
/// loudest of the next 9.
[[nodiscard]] std::vector<std::uint8_t> AttackRises(std::span<std::uint8_t const> levels);
