// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/Report.h"

#include "base/Utf16.h"
#include "cli/Message.h"
#include "cli/TableReport.h"
#include "export/FileUri.h"
#include "export/Json.h"
#include "export/ProblemName.h"
#include "song/KeyCodes.h"
#include "song/TempoText.h"

#include <cmath>

namespace {

constexpr char kCsvHeader[] =
    "path,title,artist,tempo,source,error,written,notWritten,album,tagKey,tempoNote,"
    "candidates,confidence,harmony,camelot,openKey\n";

char const* SetByName(ESetBy setBy) {
    switch (setBy) {
    case ESetBy::Tactus:
        return "tactus";
    case ESetBy::Hand:
        return "hand";
    case ESetBy::Other:
        return "other";
    case ESetBy::Nobody:
        break;
    }
    return "";
}

/// Nothing when there was nothing to be stored.
char const* WrittenName(EWriting writing) {
    switch (writing) {
    case EWriting::Stored:
        return "true";
    case EWriting::NotStored:
        return "false";
    case EWriting::NotAsked:
        break;
    }
    return "";
}

/// What a person should know of a tempo that stood in a tag, or of its absence; empty when there is
/// nothing.
char const* TempoNote(CReportRow const& row) {
    if (row.m_bNoBeat) {
        return "noBeat";
    }
    if (row.m_source != ETempoSource::Tag) {
        return "";
    }
    switch (row.m_tagTempo) {
    case ETagTempo::TimesTen:
        return "times10";
    case ETagTempo::TimesHundred:
        return "times100";
    case ETagTempo::Unlikely:
        return "unlikely";
    case ETagTempo::Plain:
    case ETagTempo::None:
        break;
    }
    return "";
}

/// JSON's word for `text`, which is null when empty.
std::string JsonTextOrNull(std::string const& text) {
    return text.empty() ? "null" : JsonText(text);
}

/// Comma-separated values by RFC 4180, lines ended as on this system. Paths keep their bytes.
class CCsvReport final : public IReport {
public:
    explicit CCsvReport(COutput& output) : m_output(output) {}

    bool Add(CReportRow const& row) override {
        return Begin() &&
               m_output.Write(Field(row.m_sPath) + "," + Field(row.m_sTitle) + "," +
                              Field(row.m_sArtist) + "," +
                              FiniteTempoText(row.m_dTempo).value_or("") + "," +
                              TempoSourceName(row.m_source) + "," + Field(row.m_sError) + "," +
                              WrittenName(row.m_writing) + "," + Field(row.m_sNotStored) + "," +
                              Field(row.m_sAlbum) + "," + Field(row.m_sTagKey) + "," +
                              TempoNote(row) + "," + Readings(row.m_candidates) + "," +
                              Keys(row.m_harmony.value_or(CHarmony())) + "\n") &&
               m_output.Flush();
    }

    bool End() override { return Begin(); }

private:
    /// "120.00 (1:1) 0.61; 240.00 (2:1) 0.39" and the confidence; nothing for none.
    static std::string Readings(CTempoCandidates const& candidates) {
        std::string text;
        for (CTempoCandidate const& reading : candidates.m_vCandidates) {
            text += (text.empty() ? "" : "; ") + ReadingText(reading);
        }
        return text + "," + (text.empty() ? "" : JsonNumber(candidates.m_fConfidence));
    }

    static std::string Keys(CHarmony const& harmony) {
        return PlainKey(harmony) + "," + CamelotCode(harmony) + "," + OpenKeyCode(harmony);
    }

    static std::string Field(std::string const& text) {
        if (text.find_first_of(",\"\r\n") == std::string::npos) {
            return text;
        }
        std::string quoted = "\"";
        for (char const c : text) {
            quoted += c == '"' ? "\"\"" : std::string(1, c);
        }
        return quoted + "\"";
    }

    bool Begin() {
        bool const isFirst = !m_bBegun;
        m_bBegun = true;
        return !isFirst || m_output.Write(kCsvHeader);
    }

    COutput& m_output;
    bool m_bBegun = false;
};

/// "2:1", or nothing for a tempo that stands in no simple ratio to the reported one.
std::string RatioText(CTempoCandidate const& reading) {
    return reading.m_nTimes == 0
               ? ""
               : std::to_string(reading.m_nTimes) + ":" + std::to_string(reading.m_nOver);
}

std::string ReadingJson(CTempoCandidate const& reading) {
    return CJsonObject()
        .Add("bpm", JsonNumber(reading.m_fBpm))
        .Add("ratio", JsonTextOrNull(RatioText(reading)))
        .Add("score", JsonNumber(reading.m_fScore))
        .Close();
}

std::string RowHarmonyJson(CHarmony const& harmony) {
    if (harmony.m_eMode == EKeyMode::None) {
        return "null";
    }
    return CJsonObject()
        .Add("plain", JsonText(PlainKey(harmony)))
        .Add("camelot", JsonText(CamelotCode(harmony)))
        .Add("openKey", JsonText(OpenKeyCode(harmony)))
        .Add("confidence", JsonNumber(harmony.m_fConfidence))
        .Add("tuning", JsonNumber(harmony.m_fTuningCents))
        .Close();
}

std::string JsonRow(CReportRow const& row) {
    CJsonObject object;
    object.Add("path", JsonText(row.m_sPath));
    if (!IsUtf8(row.m_sPath)) {
        object.Add("uri", JsonText(FileUri(row.m_sPath)));
    }
    std::string const written = WrittenName(row.m_writing);
    object.Add("title", JsonText(row.m_sTitle))
        .Add("artist", JsonText(row.m_sArtist))
        .Add("tempo", FiniteTempoText(row.m_dTempo).value_or("null"))
        .Add("source", JsonTextOrNull(TempoSourceName(row.m_source)))
        .Add("error", JsonTextOrNull(row.m_sError))
        .Add("written", written.empty() ? "null" : written)
        .Add("notWritten", JsonTextOrNull(row.m_sNotStored))
        .Add("album", JsonText(row.m_sAlbum))
        .Add("tagKey", JsonTextOrNull(row.m_sTagKey))
        .Add("tempoNote", JsonTextOrNull(TempoNote(row)))
        .Add("before", JsonTextOrNull(row.m_sBefore))
        .Add("setBy", JsonTextOrNull(SetByName(row.m_setBy)))
        .Add("plan", JsonTextOrNull(PlanName(row.m_plan)));
    if (!row.m_candidates.m_vCandidates.empty()) {
        object.Add("candidates", JsonArray(row.m_candidates.m_vCandidates, ReadingJson))
            .Add("confidence", JsonNumber(row.m_candidates.m_fConfidence));
    }
    if (row.m_harmony) {
        object.Add("harmony", RowHarmonyJson(*row.m_harmony));
    }
    return object.Close();
}

/// One JSON object a line, on their own or as the elements of an array.
class CJsonReport final : public IReport {
public:
    CJsonReport(COutput& output, bool isArray) : m_output(output), m_bArray(isArray) {}

    bool Add(CReportRow const& row) override {
        std::string const before = !m_bArray ? "" : m_bBegun ? ",\n" : "[\n";
        m_bBegun = true;
        return m_output.Write(before + JsonRow(row) + (m_bArray ? "" : "\n")) && m_output.Flush();
    }

    bool End() override { return m_output.Write(!m_bArray ? "" : m_bBegun ? "\n]\n" : "[]\n"); }

private:
    COutput& m_output;
    bool m_bArray;
    bool m_bBegun = false;
};

/// What would be done with each file, a line each.
class CPlanReport final : public IReport {
public:
    explicit CPlanReport(COutput& output) : m_output(output) {}

    bool Add(CReportRow const& row) override {
        std::string const line = Line(row);
        return m_output.Write((m_output.IsTerminal() ? Printable(line) : line) + "\n") &&
               m_output.Flush();
    }

    bool End() override { return true; }

private:
    static std::string Line(CReportRow const& row) {
        std::string const old = row.m_sBefore.empty() ? "nothing" : row.m_sBefore;
        std::string const tempo = FiniteTempoText(row.m_dTempo).value_or("nothing");
        std::string const change = row.m_plan == EPlan::Keep   ? old
                                   : row.m_plan == EPlan::Skip ? tempo
                                                               : old + " -> " + tempo;
        std::string const reason = !row.m_sError.empty() ? row.m_sError : row.m_sNotStored;
        return std::string(PlanName(row.m_plan)) + "\t" + change + "\t" + row.m_sPath +
               (reason.empty() ? "" : "\t" + reason);
    }

    COutput& m_output;
};

} // namespace

char const* PlanName(EPlan plan) {
    switch (plan) {
    case EPlan::Write:
        return "write";
    case EPlan::Keep:
        return "keep";
    case EPlan::Differ:
        return "differ";
    case EPlan::Skip:
        return "skip";
    case EPlan::None:
        break;
    }
    return "";
}

std::string ReadingText(CTempoCandidate const& reading) {
    std::string const ratio = RatioText(reading);
    return FiniteTempoText(static_cast<double>(reading.m_fBpm)).value_or("-") +
           (ratio.empty() ? " " : " (" + ratio + ") ") +
           FiniteTempoText(static_cast<double>(reading.m_fScore)).value_or("-");
}

std::string KeyInAllWays(std::optional<CHarmony> const& harmony) {
    bool const isThere = harmony && harmony->m_eMode != EKeyMode::None;
    return isThere ? PlainKey(*harmony) + " " + CamelotCode(*harmony) + " " + OpenKeyCode(*harmony)
                   : "";
}

std::optional<std::string> FiniteTempoText(std::optional<double> tempo) {
    bool const isTempo = tempo && std::isfinite(*tempo);
    return isTempo ? std::optional(TempoText(*tempo)) : std::nullopt;
}

std::unique_ptr<IReport> MakeReport(EReportFormat format, COutput& output,
                                    CExtraColumns const& extra) {
    switch (format) {
    case EReportFormat::Csv:
        return std::make_unique<CCsvReport>(output);
    case EReportFormat::Json:
        return std::make_unique<CJsonReport>(output, true);
    case EReportFormat::JsonLines:
        return std::make_unique<CJsonReport>(output, false);
    case EReportFormat::Plan:
        return std::make_unique<CPlanReport>(output);
    case EReportFormat::Table:
        break;
    }
    return std::make_unique<CTableReport>(output, extra);
}
