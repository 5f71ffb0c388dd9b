// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// `value` with so many decimals and a point, whatever the locale: "128.10". "0" for NaN and
/// infinities.
[[nodiscard]] std::string DecimalText(double value, int decimals);
