// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/SongPicture.h"
#include "base/CancelFlag.h"

#include <memory>
#include <string>

using CSongPicturePtr = std::shared_ptr<CSongPicture const>;

/// Where pictures of songs come from.
/// Thread: a worker; never two calls at once.
class IPictureSource {
public:
    virtual ~IPictureSource() = default;

    /// The picture of the file at `path`, which is bytes; one that only has the reason for a file
    /// that can't be heard. Null once `cancel` was set.
    [[nodiscard]] virtual CSongPicturePtr Get(std::string const& path,
                                              CCancelFlag const& cancel) = 0;
};

/// Hears every song anew.
class CHeardPictures final : public IPictureSource {
public:
    [[nodiscard]] CSongPicturePtr Get(std::string const& path, CCancelFlag const& cancel) override;
};
