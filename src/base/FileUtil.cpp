// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "base/FileUtil.h"

#include "base/FileManager.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace {

constexpr int kMaxCreatePasses = 1001; // Fixed: ends the search for a parent that can't be made.

std::uint32_t Position(std::int32_t found) {
    return static_cast<std::uint32_t>(found);
}

CString LowerCased(wchar_t const* text) {
    CString lower(text);
    lower.MakeLower();
    return lower;
}

CStatus YesOrNo(bool yes) {
    return yes ? kStatusOk : kStatusNothing;
}

} // namespace

CStatus CFileUtil::PathAppend(wchar_t const* dir, wchar_t const* name, CString& out) {
    CString joined(dir);
    joined.PathAppend(name);
    out = joined;
    return kStatusOk;
}

CStatus CFileUtil::IsFileInDir(wchar_t const* path, wchar_t const* dir) {
    return YesOrNo(LowerCased(path).Find(LowerCased(dir)) >= 0);
}

CStatus CFileUtil::DoesFileExist(wchar_t const* path, signed char noDirs) {
    CString const file(path);
    return YesOrNo(CFileManager::Exists(file) && (noDirs == 0 || !CFileManager::IsDirectory(file)));
}

CStatus CFileUtil::IsDirectoryValid(wchar_t const* path) {
    return DoesFileExist(path, 0);
}

CStatus CFileUtil::IsMatchingFileExt(wchar_t const* ext, wchar_t const* list) {
    CString const wanted = LowerCased(ext);
    CString const items = LowerCased(list);
    auto const length = static_cast<std::int32_t>(items.GetLength());
    std::int32_t start = 0;
    std::int32_t end = items.Find(L";");
    // Deliberate: an item counts only when a ";" follows it, so the last one never matches.
    while (start < length && start < end) {
        if (items.Mid(Position(start), Position(end - start)) == wanted) {
            return kStatusOk;
        }
        start = end + 1;
        end = items.Find(L";", Position(start));
    }
    return kStatusNothing;
}

CStatus CFileUtil::GetParentDirectory(wchar_t const* path, CString& out) {
    CString folder(path);
    if (folder.GetLength() > 1 && folder.Units().back() == u'/') {
        folder = folder.Left(folder.GetLength() - 1);
    }
    std::int32_t const slash = folder.ReverseFind(u'/');
    if (slash <= 0) {
        return kStatusNothing;
    }
    out = folder.Left(Position(slash));
    return kStatusOk;
}

CStatus CFileUtil::RemoveInvalidFileNameChars(CString& name) {
    std::u16string kept(name.Units());
    std::erase_if(kept, [](char16_t unit) {
        return kInvalidFileNameChars.find(unit) != std::u16string_view::npos;
    });
    name = CString(kept);
    return kStatusOk;
}

CStatus CFileUtil::ChangeFileExt(wchar_t const* path, wchar_t const* ext, CString& out) {
    CString const whole(path);
    std::int32_t const dot = whole.ReverseFind(u'.');
    bool const hasExtension = dot >= 0 && dot > whole.ReverseFind(u'/');
    CString const base = hasExtension ? whole.Left(Position(dot) + 1) : whole + L".";
    out = base + ext;
    return kStatusOk;
}

CStatus CFileUtil::ExtractFileName(wchar_t const* path, CString& out) {
    CString const whole(path);
    std::uint32_t const start = Position(whole.ReverseFind(u'/') + 1);
    bool const hasName = start > 0 && start < whole.GetLength();
    out = hasName ? whole.Mid(start, 0) : whole;
    return YesOrNo(hasName);
}

CStatus CFileUtil::ExtractFilePath(wchar_t const* path, CString& out) {
    CString const whole(path);
    std::int32_t const slash = whole.ReverseFind(u'/');
    if (slash <= 0) {
        return kStatusFailure;
    }
    out = whole.Left(Position(slash));
    return kStatusOk;
}

CStatus CFileUtil::RemoveExtension(CString& name) {
    std::int32_t const dot = name.ReverseFind(u'.');
    if (dot < 1 || dot < name.ReverseFind(u'/')) {
        return kStatusNothing;
    }
    name = name.Left(Position(dot));
    return kStatusOk;
}

CStatus CFileUtil::GetLowerCaseFileExt(wchar_t const* path, CString& out) {
    CString const lower = LowerCased(path);
    std::int32_t const dot = lower.ReverseFind(u'.');
    // Deliberate: a dot at position 0 begins an extension here, though `RemoveExtension` takes
    // it for part of the name.
    if (dot < 0 || dot < lower.ReverseFind(u'/')) {
        return kStatusNothing;
    }
    out = lower.Mid(Position(dot) + 1, 0);
    return kStatusOk;
}

CStatus CFileUtil::CreateDirectoryFull(wchar_t const* path) {
    CString const full(path);
    CString current = full;
    // Each pass goes one level up or creates one level and starts again from the whole path.
    for (int pass = 0; pass < kMaxCreatePasses; ++pass) {
        CString parent;
        if (GetParentDirectory(current, parent) != kStatusOk) {
            return kStatusFailure;
        }
        if (DoesFileExist(parent, 0) != kStatusOk) {
            current = parent;
            continue;
        }
        CFileManager::CreateDirectory(current);
        if (current == full) {
            return kStatusOk;
        }
        current = full;
    }
    return kStatusFailure;
}

CStatus CFileUtil::IsFreeSpaceAvailable(wchar_t const* /*path*/, std::uint64_t /*bytes*/) {
    return kStatusOk;
}

CStatus CFileUtil::CreateFileDlgString(CString& /*out*/, wchar_t* /*text*/,
                                       std::uint16_t /*count*/) {
    return kStatusOk;
}

CStatus CFileUtil::ExtractSecondaryPath(wchar_t const* /*path*/, wchar_t const* /*base*/,
                                        CString& /*out*/) {
    return kStatusNothing;
}

CStatus CFileUtil::GetFileSize(wchar_t const* /*path*/, std::uint64_t* /*size*/) {
    return kStatusFailure;
}

CStatus CFileUtil::GetFileVersion(wchar_t const* /*path*/, std::uint32_t* /*high*/,
                                  std::uint32_t* /*low*/) {
    return kStatusFailure;
}

CStatus CFileUtil::GetFileVersion(wchar_t const* /*path*/, std::uint64_t* /*version*/) {
    return kStatusFailure;
}
