// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Rows whose tempo a person or another program has set: it came with the file or was set by hand,
// and the journal knows of no hearing that gave it. One that the row doesn't show counts where it
// would be replaced.

#include "IDTag/FrameIds.h"
#include "app/Batch.h"
#include "app/RowTempo.h"

#include <utility>

namespace {

bool IsTempoUnshown(CListRow const& row) {
    CString const tempo = TempoInTagOf(row);
    return !tempo.IsEmpty() && tempo != row.m_file.GetTempo();
}

} // namespace

// The journal is asked without the lock: it may lie on a slow disk.
std::size_t CBatch::CountForeign() {
    std::vector<std::pair<std::string, std::string>> found; // paths and texts
    {
        auto const guard = m_list.Lock();
        for (std::size_t index = 0; index < m_list.Size(); ++index) {
            CListRow const& row = m_list.Row(index);
            if (row.m_bHidden) {
                continue;
            }
            if (row.m_bFromTag || row.m_bByHand) {
                found.emplace_back(row.m_file.GetPath().ToPath(), TextInTagOf(row).ToUtf8());
            } else if (m_list.Wishes().m_bWriteOtherKinds && IsTempoUnshown(row)) {
                found.emplace_back(row.m_file.GetPath().ToPath(), row.m_sTempoInTag->ToUtf8());
            }
        }
    }
    std::size_t count = 0;
    for (auto const& [path, text] : found) {
        bool const isOurs = m_journal.OriginOf(path, kTempoFrameId, text) == ETextOrigin::Heard;
        count += static_cast<std::size_t>(!isOurs);
    }
    return count;
}
