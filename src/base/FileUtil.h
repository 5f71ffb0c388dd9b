// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "base/CString.h"
#include "base/Status.h"

#include <cstdint>
#include <string_view>

/// Routines on paths and files. A path's parts are parted by "/". Unless told otherwise they
/// return 0 for yes or done and 1 for no or nothing to do. An output may be the string whose
/// pointer is the input.
/// Thread: any.
class CFileUtil {
public:
    // Fixed: what a file's name can't hold on one system or another.
    // Deliberate: the asterisk and the percent sign stand in it twice, which changes nothing.
    static constexpr std::u16string_view kInvalidFileNameChars = u"%^*\"\\/?*:'|<>$%[]";

    /// `dir` joined with `name` as by `CString::PathAppend`.
    /// Returns: 0.
    static CStatus PathAppend(wchar_t const* dir, wchar_t const* name, CString& out);

    /// Whether `dir` occurs anywhere inside `path`, upper and lower case alike.
    static CStatus IsFileInDir(wchar_t const* path, wchar_t const* dir);

    /// Whether something is at `path`; with a non-zero `noDirs`, something else than a folder.
    static CStatus DoesFileExist(wchar_t const* path, signed char noDirs);

    /// Whether something is at `path`, be it a folder or not.
    static CStatus IsDirectoryValid(wchar_t const* path);

    /// Whether `ext`, without a dot, is an item of `list`, upper and lower case alike. Only items
    /// that a ";" follows are looked at, up to the first empty one.
    static CStatus IsMatchingFileExt(wchar_t const* ext, wchar_t const* list);

    /// The path without its last part; one "/" at the end doesn't count.
    /// Returns: 1, `out` unchanged, when there is none or it would be the root.
    static CStatus GetParentDirectory(wchar_t const* path, CString& out);

    /// Takes every one of `kInvalidFileNameChars` out of `name`.
    /// Returns: 0.
    static CStatus RemoveInvalidFileNameChars(CString& name);

    /// The path with `ext`, without a dot, instead of its extension; with "." and `ext` behind it
    /// when it has none.
    /// Returns: 0.
    static CStatus ChangeFileExt(wchar_t const* path, wchar_t const* ext, CString& out);

    /// The text after the last "/".
    /// Returns: 1, with the whole path in `out`, when there is no "/" or nothing follows it.
    static CStatus ExtractFileName(wchar_t const* path, CString& out);

    /// The text before the last "/".
    /// Returns: failure, `out` unchanged, when there is no "/" or it is the first character.
    static CStatus ExtractFilePath(wchar_t const* path, CString& out);

    /// Cuts `name` at its last "." when that dot is in the last part of the path and isn't the
    /// very first character.
    /// Returns: 1 when nothing is cut.
    static CStatus RemoveExtension(CString& name);

    /// The text after the last "." in lower case, when that dot is in the last part of the path.
    /// Returns: 1, `out` unchanged, when there is no such dot.
    static CStatus GetLowerCaseFileExt(wchar_t const* path, CString& out);

    /// Creates the folder `path` and every missing one above it. The first part of a path must be
    /// there: "/a" and "a" themselves can't be made. Whether the last step worked isn't checked.
    /// Returns: 0, or failure when a folder above can't be made or found.
    static CStatus CreateDirectoryFull(wchar_t const* path);

    // The rest is there for its callers and answers the same always: no question is asked of the
    // host, and nothing is written to an output.

    /// Returns: 0.
    static CStatus IsFreeSpaceAvailable(wchar_t const* path, std::uint64_t bytes);
    static CStatus CreateFileDlgString(CString& out, wchar_t* text, std::uint16_t count);

    /// Returns: 1.
    static CStatus ExtractSecondaryPath(wchar_t const* path, wchar_t const* base, CString& out);

    /// Returns: failure.
    static CStatus GetFileSize(wchar_t const* path, std::uint64_t* size);
    static CStatus GetFileVersion(wchar_t const* path, std::uint32_t* high, std::uint32_t* low);
    static CStatus GetFileVersion(wchar_t const* path, std::uint64_t* version);
};
