// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/PictureSource.h"

#include "engine/ProfileObserver.h"
#include "engine/envelope/ImpactPoints.h"
#include "song/SongProfile.h"

#include <utility>

namespace {

/// Keeps the beat grid of a run.
class CGridKeeper final : public IProfileObserver {
public:
    void OnBeats(CPfImpactPoints const& beats) override { m_grid = beats; }

    CPfImpactPoints m_grid{0, 0};
};

} // namespace

CSongPicturePtr CHeardPictures::Get(std::string const& path, CCancelFlag const& cancel) {
    CGridKeeper keeper;
    CSongProfile profile =
        ProfileSong(path, {.m_pCancel = &cancel, .m_pObserver = &keeper, .m_bKeepEnvelopes = true});
    if (cancel.IsSet() || profile.m_bCancelled) {
        return nullptr;
    }
    return std::make_shared<CSongPicture const>(MakeSongPicture(std::move(profile), keeper.m_grid));
}
