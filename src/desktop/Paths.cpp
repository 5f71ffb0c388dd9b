// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/Paths.h"

#include <QSysInfo>
#include <filesystem>
#include <system_error>

namespace {

bool IsThisHost(QString const& host) {
    return host.isEmpty() || host.compare("localhost", Qt::CaseInsensitive) == 0 ||
           host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

} // namespace

std::string LocalPathBytes(QUrl const& url) {
    if (!url.isLocalFile() || !IsThisHost(url.host())) {
        return {};
    }
    std::string path =
        QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()).toStdString();
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

std::vector<std::string> LocalPaths(QMimeData const& data) {
    std::vector<std::string> paths;
    for (QUrl const& url : data.urls()) {
        std::string path = LocalPathBytes(url);
        if (!path.empty()) {
            paths.push_back(std::move(path));
        }
    }
    return paths;
}

std::vector<CString> AsListPaths(std::vector<std::string> const& paths) {
    std::vector<CString> result;
    result.reserve(paths.size());
    for (std::string const& path : paths) {
        result.push_back(CString::FromPath(path));
    }
    return result;
}

std::string ArgumentPath(std::string const& argument) {
    std::error_code error;
    std::filesystem::path const absolute = std::filesystem::absolute(argument, error);
    std::string path = error ? argument : absolute.lexically_normal().string();
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}
