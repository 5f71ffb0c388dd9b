// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"

#include <QMimeData>
#include <QUrl>
#include <string>
#include <vector>

/// Paths cross the border between Qt and the list as the bytes that the file system holds.
/// Thread: main.

/// The bytes of a local file's path, percent-encoded ones decoded, also those that are not UTF-8.
/// Returns: empty for anything but a local file.
std::string LocalPathBytes(QUrl const& url);

/// The local files of a drag or of the clipboard, in order.
std::vector<std::string> LocalPaths(QMimeData const& data);

/// The same paths for the list.
std::vector<CString> AsListPaths(std::vector<std::string> const& paths);

/// An argument of the program as an absolute path without "." and ".." components.
std::string ArgumentPath(std::string const& argument);
