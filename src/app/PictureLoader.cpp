// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/PictureLoader.h"

#include <utility>

void CPictureLoader::Load(std::string path, Taker taker) {
    Cancel();
    m_pCancel = std::make_shared<CCancelFlag>();
    // Without a thread there is no picture.
    (void)m_queue.Post(
        [this, path = std::move(path), taker = std::move(taker), cancel = m_pCancel] {
            CSongPicturePtr picture = cancel->IsSet() ? nullptr : m_source.Get(path, *cancel);
            if (picture != nullptr && !cancel->IsSet()) {
                taker(std::move(picture));
            }
        });
}

void CPictureLoader::Cancel() {
    m_pCancel->Set();
}
