// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/PictureSource.h"

#include "song/SongProfile.h"

#include <utility>

CSongPicturePtr CHeardPictures::Get(std::string const& path, CCancelFlag const& cancel) {
    CSongProfile profile =
        ProfileSong(path, {.m_pCancel = &cancel, .m_bKeepEnvelopes = true, .m_bHearBeats = true});
    if (cancel.IsSet() || profile.m_bCancelled) {
        return nullptr;
    }
    return std::make_shared<CSongPicture const>(MakeSongPicture(std::move(profile)));
}
