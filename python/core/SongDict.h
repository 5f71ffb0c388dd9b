// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <pybind11/pybind11.h>
#include <tactus/tactus.h>

/// Which file was heard, as an object that Python only hands back.
struct CEvidence {
    std::shared_ptr<tactus::Evidence const> m_pEvidence;
};

/// The song as keyword arguments of the Python class, with arrays of its own.
pybind11::dict SongDict(tactus::Song const& song);

/// The names that the Python side knows problems and refusals by.
char const* NameOf(tactus::Problem problem);
char const* NameOf(tactus::Refusal refusal);
