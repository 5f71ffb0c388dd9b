// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Paths and extensions of any bytes: a path comes back as it was, its parts are parts of it, and an
// extension only matches a list that contains it.

#include "FuzzFile.h"
#include "base/CString.h"
#include "base/FileUtil.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    std::string const bytes(reinterpret_cast<char const*>(data), size);
    std::size_t const middle = bytes.find('\n');
    std::string const first = bytes.substr(0, middle);
    std::string const second = middle == std::string::npos ? "" : bytes.substr(middle + 1);

    CString const path = CString::FromPath(first);
    if (first.find('\0') == std::string::npos) {
        FUZZ_REQUIRE(path.ToPath() == first);
    }
    CString part;
    (void)CFileUtil::ExtractFileName(path, part);
    FUZZ_REQUIRE(part.GetLength() <= path.GetLength());
    (void)CFileUtil::ExtractFilePath(path, part);
    (void)CFileUtil::GetParentDirectory(path, part);
    (void)CFileUtil::GetLowerCaseFileExt(path, part);
    (void)CFileUtil::ChangeFileExt(path, CString::FromPath(second), part);
    CString name = path;
    (void)CFileUtil::RemoveExtension(name);
    FUZZ_REQUIRE(CFileUtil::RemoveInvalidFileNameChars(name) == kStatusOk);
    CString list = CString::FromPath(second);
    CString extension = path;
    if (CFileUtil::IsMatchingFileExt(extension, list) == kStatusOk) {
        list.MakeLower();
        extension.MakeLower();
        FUZZ_REQUIRE(extension.IsEmpty() || list.Find(extension, 0) >= 0);
    }
    CString joined = path;
    joined.PathAppend(CString::FromPath(second));
    FUZZ_REQUIRE(joined.GetLength() <= path.GetLength() + second.size() + 1);
    return 0;
}
