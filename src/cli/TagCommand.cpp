// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "cli/TagCommand.h"

#include "IDTag/ID3Reader.h"
#include "IDTag/TagStore.h"
#include "base/Utf16.h"
#include "cli/ExitCode.h"
#include "cli/InputList.h"
#include "cli/Interrupt.h"
#include "cli/Message.h"
#include "cli/Output.h"
#include "cli/RecordReason.h"
#include "cli/TagListing.h"
#include "cli/WriteReason.h"
#include "records/Journal.h"
#include "records/Places.h"
#include "records/RecordStore.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view kFrameIdCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";      // Standard: ID3v2.3.0, section 3.3.
constexpr std::string_view kCommentId = "COMM";  // Standard: ID3v2.3.0, section 4.11.
constexpr std::string_view kUserTextId = "TXXX"; // Standard: ID3v2.3.0, section 4.2.2.
constexpr char kStandardInput[] = "-";

bool IsFrameId(std::string_view id) {
    return id.size() == kFrameIdBytes &&
           id.find_first_not_of(kFrameIdCharacters) == std::string_view::npos;
}

/// Frames whose body is one text. Any other would be destroyed by a text.
bool IsTextFrameId(std::string_view id) {
    return IsFrameId(id) && id != kUserTextId && (id.front() == 'T' || id == kCommentId);
}

/// A file that is read, also from standard input.
class CTagInput {
public:
    explicit CTagInput(std::string const& file) : m_inputs(Listed(file)), m_sPath(file) {
        if (!m_inputs.Files().empty()) {
            m_sPath = m_inputs.Files().front().m_sPath.ToPath();
            m_sError = m_inputs.Files().front().m_sError;
        }
        if (m_sError.empty()) {
            m_sError = OpeningReason(m_sPath);
        }
    }

    [[nodiscard]] CString Path() const { return CString::FromPath(m_sPath); }
    [[nodiscard]] std::string const& Error() const { return m_sError; }

private:
    static std::vector<std::string> Listed(std::string const& file) {
        return file == kStandardInput ? std::vector<std::string>{file} : std::vector<std::string>();
    }

    CInputList m_inputs;
    std::string m_sPath;
    std::string m_sError;
};

/// Text of a frame as the metadata import finds it: in the tag, else in a trailer. The tag is read
/// by the programs' own rules, so that none ends the process.
bool FindText(CString const& path, CFile& file, char const* frameId, CString& value) {
    bool const isFound = ReadTagText(path, frameId, value) == kStatusOk ||
                         CID3Reader::ImportID3v1MetaData(&file, frameId, value) != 0 ||
                         CID3Reader::ImportVeltoMetaData(&file) != 0;
    return isFound && !value.IsEmpty();
}

} // namespace

CLI::App* CTagCommand::AddTo(CLI::App& program) {
    CLI::App* const tag = program.add_subcommand("tag", "Read or write the tag of a file");
    tag->require_subcommand(1);
    auto const add = [&](char const* name, char const* help, auto action) {
        CLI::App* const app = tag->add_subcommand(name, help);
        app->add_option("FILE", m_sFile, "The audio file")->type_name("")->required();
        app->parse_complete_callback([this, action] { m_pAction = action; });
        return app;
    };
    auto const addFrameId = [&](CLI::App* app) {
        app->add_option("FRAMEID", m_sFrameId, "Four characters, such as TBPM or TIT2")
            ->type_name("")
            ->required();
    };
    addFrameId(add("get", "Print the text of one frame", &CTagCommand::Get));
    CLI::App* const set =
        add("set", "Write the text of one frame into an mp3 file", &CTagCommand::Set);
    addFrameId(set);
    set->add_option("TEXT", m_sText, "The new text; empty empties the frame")
        ->type_name("")
        ->required();
    set->add_flag("--keep-mtime", m_bKeepTime, "Leave the file's time of the last write as it is");
    CLI::App* const list = add("list", "Print all frames of the tag", &CTagCommand::List);
    list->add_flag("--json", m_bJson, "Print one JSON object");
    return tag;
}

int CTagCommand::Run() {
    CInterrupt::Install();
    return (this->*m_pAction)();
}

int CTagCommand::Get() const {
    if (!IsFrameId(m_sFrameId)) {
        ReportProblem(m_sFrameId, "is no frame id: four capital letters or digits are");
        return kExitUsage;
    }
    CTagInput const input(m_sFile);
    CFile file;
    if (!input.Error().empty() || !file.Open(input.Path(), CFile::modeRead, nullptr)) {
        ReportProblem(m_sFile, input.Error().empty() ? "can't be opened" : input.Error());
        return kExitFailed;
    }
    CString value;
    if (!FindText(input.Path(), file, m_sFrameId.c_str(), value)) {
        ReportProblem(m_sFile, "has no " + m_sFrameId);
        return kExitFailed;
    }
    COutput output;
    std::string const text = value.ToUtf8();
    output.Write((output.IsTerminal() ? Printable(text) : text) + "\n");
    return output.Finish() ? kExitDone : kExitOutput;
}

int CTagCommand::Set() const {
    if (!IsTextFrameId(m_sFrameId)) {
        ReportProblem(m_sFrameId, "is no text frame: COMM and T000 to TZZZ but TXXX are");
        return kExitUsage;
    }
    if (!IsUtf8(m_sText)) {
        ReportProblem("the text is not UTF-8");
        return kExitUsage;
    }
    if (m_sFile == kStandardInput) {
        ReportProblem("standard input can't be written");
        return kExitUsage;
    }
    std::string const error = OpeningReason(m_sFile);
    if (!error.empty()) {
        ReportProblem(m_sFile, error);
        return kExitFailed;
    }
    CTagStoreOptions options;
    options.m_bNeedsMpegChain = true;
    options.m_bKeepTime = m_bKeepTime;
    CRecordStore store(CacheFolder());
    CJournal journal(StateFolder());
    journal.SetStore(&store);
    std::unique_ptr<ITagWitness> const witness =
        journal.Witness(EJournalWriter::TagSet, ETextOrigin::Hand);
    options.m_pWitness = witness.get();
    CTagStoreReport report;
    EWriteProblem const problem = StoreTagText(CString::FromPath(m_sFile), m_sFrameId.c_str(),
                                               CString::FromUtf8(m_sText), options, &report);
    if (problem != EWriteProblem::None) {
        ReportProblem(m_sFile, WriteReason(problem));
        return kExitFailed;
    }
    ReportJournal(journal);
    std::string const note = ConversionNote(report.m_vConverted);
    if (!note.empty()) {
        ReportProblem(m_sFile, note);
    }
    // A request to stop let the write come to its end.
    return CInterrupt::IsSet() ? CInterrupt::ExitCode() : kExitDone;
}

int CTagCommand::List() const {
    CTagInput const input(m_sFile);
    CTagRules rules;
    rules.m_bEveryId = true;
    CID3Tag tag;
    tag.SetRules(rules);
    CStatus const status = tag.OpenFile(input.Path());
    if (status < 0) {
        ReportProblem(m_sFile, input.Error().empty() ? "its tag can't be read" : input.Error());
    }
    COutput output;
    output.Write(m_bJson ? TagAsJson(tag, status) : TagAsText(tag, status));
    if (!output.Finish()) {
        return kExitOutput;
    }
    return status >= 0 ? kExitDone : kExitFailed;
}
