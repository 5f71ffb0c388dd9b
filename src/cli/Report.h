// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "cli/Output.h"
#include "export/TakenSong.h"
#include "song/TagTempo.h"
#include "song/TempoCandidates.h"

#include <memory>
#include <optional>
#include <string>

/// What became of storing a tempo that was heard.
enum class EWriting { NotAsked, Stored, NotStored };

/// Who set the tempo that stands in a file's tag.
enum class ESetBy { Nobody, Tactus, Hand, Other };

/// What a run with --write would do.
enum class EPlan {
    None,
    Write,
    Keep,   // the tag has a tempo that stays
    Differ, // the same, and another one was heard
    Skip,   // nothing could be written
};

/// What there is to tell about one file.
struct CReportRow {
    std::string m_sPath;            // bytes as given or found
    std::string m_sTitle;           // UTF-8
    std::string m_sArtist;          // UTF-8
    std::optional<double> m_dTempo; // beats per minute; nothing when there is none
    ETempoSource m_source = ETempoSource::None;
    std::string m_sError; // the reason for a person; empty when all went well
    EWriting m_writing = EWriting::NotAsked;
    std::string m_sNotStored = {};           // why, for a person, when `m_writing` is `NotStored`
    std::string m_sAlbum = {};               // UTF-8
    std::string m_sTagKey = {};              // the key that the tag tells, UTF-8
    ETagTempo m_tagTempo = ETagTempo::Plain; // of a tempo from the tag: what it is worth there

    ESetBy m_setBy = ESetBy::Nobody;    // of the tempo that stands in the file's tag
    std::string m_sBefore = {};         // the text of the tempo there, UTF-8
    EPlan m_plan = EPlan::None;         // of a dry run
    CTempoCandidates m_candidates = {}; // none unless they were asked for
    std::shared_ptr<CTakenSong const> m_pSong =
        {}; // the whole record; null unless it was asked for

    std::optional<CHarmony> m_harmony = {}; // likewise

    bool m_bNoBeat = false; // it was heard, and none was found

    // Not part of the report:
    double m_dHeardSeconds = 0.0; // of music, that this run listened to
    bool m_bKept = false;         // a tempo in the tag stays although another one was heard
    std::string m_sDetail = {};   // what the decoding library said
    std::string m_sNote = {};     // what was done to the tag beside what was asked for
    bool m_bTooShort = false;     // not stored, because the tempo follows from the length
    bool m_bRefused = false;      // not stored, and a person would expect otherwise
    bool m_bTitleIsName = false;  // the title is the file's name, for want of another
    bool m_bNewVersion = false;   // its version 2.4 tag became version 2.3
    bool m_bFurtherName = false;  // of a file that has a row already
};

/// Columns that a table has on request.
struct CExtraColumns {
    bool m_bOther = false;   // the next reading of each tempo
    bool m_bHarmony = false; // the key of chords and melody
};

enum class EReportFormat { Table, Csv, Json, JsonLines, Plan };

/// Writes rows in one format.
/// Thread: main.
class IReport {
public:
    virtual ~IReport() = default;

    /// Takes the next row. Returns: false once the output can't be written.
    virtual bool Add(CReportRow const& row) = 0;

    /// Writes what belongs behind the last row, and what was held back. Returns: as `Add`.
    virtual bool End() = 0;

protected:
    IReport() = default;
    IReport(IReport const&) = delete;
    IReport& operator=(IReport const&) = delete;
};

/// A report that writes to `output`, which must outlive it. Table rows are held back to the end,
/// because the columns are as wide as what they hold; the other formats write row by row.
std::unique_ptr<IReport> MakeReport(EReportFormat format, COutput& output,
                                    CExtraColumns const& extra = {});

/// "write", "keep", "differ" or "skip"; empty for none.
char const* PlanName(EPlan plan);

/// "174.08 (2:1) 0.43": a reading, its ratio to the reported tempo if it is a simple one, and its
/// score.
std::string ReadingText(CTempoCandidate const& reading);

/// "Am 8A 1m": a key as tags have it, and by Camelot and Open Key; empty for none.
std::string KeyInAllWays(std::optional<CHarmony> const& harmony);

/// `TempoText` of a tempo. Nothing for infinity and NaN, which are none.
std::optional<std::string> FiniteTempoText(std::optional<double> tempo);
