// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Any bytes as a path: they come back, its parts make up the whole again, and the list of
// extensions is read as a plain walk over its items reads it.
//
// Input: the path, up to the first 0; the extension list, which is the rest.

#include "FuzzFile.h"
#include "base/CString.h"
#include "base/FileUtil.h"

#include <algorithm>
#include <string_view>

namespace {

CString Lower(CString text) {
    text.MakeLower();
    return text;
}

/// Items are what stands before a ";", up to the first empty one.
bool IsListed(std::u16string_view wanted, std::u16string_view list) {
    for (std::size_t end = list.find(u';'); end != list.npos && end > 0; end = list.find(u';')) {
        if (list.substr(0, end) == wanted) {
            return true;
        }
        list.remove_prefix(end + 1);
    }
    return false;
}

void CheckExtensions(CString const& ext, CString const& list) {
    bool const expected = IsListed(Lower(ext).Units(), Lower(list).Units());
    FUZZ_REQUIRE((CFileUtil::IsMatchingFileExt(ext, list) == kStatusOk) == expected);
}

void CheckParts(CString const& path) {
    CString folder;
    CString name;
    bool const hasFolder = CFileUtil::ExtractFilePath(path, folder) == kStatusOk;
    bool const hasName = CFileUtil::ExtractFileName(path, name) == kStatusOk;
    FUZZ_REQUIRE(!hasFolder || !hasName || folder + L"/" + name == path);
    FUZZ_REQUIRE(hasName || name == path);
    CString parent;
    if (CFileUtil::GetParentDirectory(path, parent) == kStatusOk) {
        FUZZ_REQUIRE(!parent.IsEmpty() && parent.GetLength() < path.GetLength());
        FUZZ_REQUIRE(path.Left(parent.GetLength()) == parent);
    }
    CString joined;
    FUZZ_REQUIRE(CFileUtil::PathAppend(folder, name, joined) == kStatusOk);
    FUZZ_REQUIRE(joined.GetLength() <= folder.GetLength() + name.GetLength() + 1);
    CString kept = path;
    FUZZ_REQUIRE(CFileUtil::RemoveInvalidFileNameChars(kept) == kStatusOk);
    FUZZ_REQUIRE(kept.Units().find_first_of(CFileUtil::kInvalidFileNameChars) ==
                 std::u16string_view::npos);
}

void CheckExtension(CString const& path) {
    CString ext;
    CString base = path;
    bool const hasExt = CFileUtil::GetLowerCaseFileExt(path, ext) == kStatusOk;
    bool const isCut = CFileUtil::RemoveExtension(base) == kStatusOk;
    FUZZ_REQUIRE(!isCut || hasExt);
    FUZZ_REQUIRE(!isCut || Lower(base) + L"." + ext == Lower(path));
    CString changed;
    FUZZ_REQUIRE(CFileUtil::ChangeFileExt(path, L"mp3", changed) == kStatusOk);
    CString changedExt;
    FUZZ_REQUIRE(CFileUtil::GetLowerCaseFileExt(changed, changedExt) == kStatusOk);
    FUZZ_REQUIRE(changedExt == L"mp3");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string_view const text(reinterpret_cast<char const*>(data), size);
    std::string_view const bytes = text.substr(0, std::min(text.find('\0'), size));
    std::string_view const rest = text.substr(std::min(bytes.size() + 1, size));
    CString const path = CString::FromPath(bytes);
    FUZZ_REQUIRE(path.ToPath() == bytes);
    (void)path.ToUtf8();
    CheckParts(path);
    CheckExtension(path);
    // What a path shows as an extension, and the whole of it, against the list.
    CString const list(CString::FromPath(rest.substr(0, std::min(rest.find('\0'), rest.size()))));
    CString ext;
    (void)CFileUtil::GetLowerCaseFileExt(path, ext);
    CheckExtensions(ext, list);
    CheckExtensions(path, list);
    CheckExtensions(L"mp3", list);
    return 0;
}
