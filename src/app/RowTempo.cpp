// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/RowTempo.h"

#include "app/RowTags.h"
#include "song/TagTempo.h"
#include "song/TempoText.h"

CRowTempo TempoOfRow(CListRow const& row) {
    return {.m_sText = row.m_file.GetTempo(),
            .m_bDone = row.m_file.IsDone(),
            .m_bFromTag = row.m_bFromTag,
            .m_bByHand = row.m_bByHand,
            .m_bNotInFile = row.m_bNotInFile,
            .m_dExactBpm = row.m_dExactBpm,
            .m_outcome = row.m_outcome,
            .m_writeProblem = row.m_writeProblem};
}

void SetTempoOfRow(CFileList& list, CListRow& row, CRowTempo const& tempo) {
    bool const wasToDo = row.IsToDo();
    row.m_file.SetTempo(tempo.m_sText);
    row.m_bFromTag = tempo.m_bFromTag;
    row.m_bByHand = tempo.m_bByHand;
    row.m_bNotInFile = tempo.m_bNotInFile;
    row.m_dExactBpm = tempo.m_dExactBpm;
    if (row.m_outcome.m_problem != tempo.m_outcome.m_problem) {
        list.SetOutcome(row, tempo.m_outcome);
    }
    if (row.m_writeProblem != tempo.m_writeProblem) {
        list.SetWriteProblem(row, tempo.m_writeProblem);
    }
    if (tempo.m_bDone) {
        list.SetDone(row);
        return;
    }
    list.Undo(row);
    // A batch that is running has one more file then.
    std::size_t& files = list.Counts().m_nBatchFiles;
    files += static_cast<std::size_t>(files > 0 && !wasToDo && row.IsToDo());
}

double BpmOfRow(CListRow const& row) {
    if (row.m_nPercent >= 0) {
        return 0.0;
    }
    std::string const text = row.m_file.GetTempo().ToUtf8();
    if (row.m_dExactBpm > 0.0 && TempoText(row.m_dExactBpm) == text) {
        return row.m_dExactBpm;
    }
    CTagTempo const tempo = JudgeTagTempo(text);
    return tempo.m_worth == ETagTempo::None ? 0.0 : tempo.m_dBpm;
}

CString TextInTagOf(CListRow const& row) {
    return row.m_bFromTag && row.m_sTempoInTag ? *row.m_sTempoInTag : row.m_file.GetTempo();
}

CString TempoInTagOf(CListRow const& row) {
    return row.m_sTempoInTag ? TempoOfTagText(row.m_file.GetPath(), *row.m_sTempoInTag) : CString();
}
