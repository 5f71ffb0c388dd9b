// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <pybind11/pybind11.h>
#include <tactus/tactus.h>

/// What was heard and of what, as an object that Python only hands back.
struct CHeard {
    tactus::Song m_song = {};
    std::filesystem::path m_path = {}; // empty for samples
    tactus::Tags m_tags = {};          // empty for samples
};

/// The song as keyword arguments of the Python class, with arrays of its own.
pybind11::dict SongDict(tactus::Song const& song);

/// The tags likewise.
pybind11::dict TagsDict(tactus::Tags const& tags);

/// The names that the Python side knows problems and refusals by.
char const* NameOf(tactus::Problem problem);
char const* NameOf(tactus::Refusal refusal);
