// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "support/Process.h"
#include "support/TagFile.h"
#include "support/TempFolder.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

// The program from outside: `tactus tag`.

namespace {

using PlainJson = nlohmann::json;
using testing::HasSubstr;

class TagTest : public testing::Test {
protected:
    /// Runs `tactus tag` with `arguments` in the temporary folder.
    CProcessResult Tag(std::vector<std::string> const& arguments, std::string const& input = {}) {
        CProcessSetup setup;
        setup.m_vArguments = {TACTUS_PROGRAM, "tag"};
        setup.m_vArguments.insert(setup.m_vArguments.end(), arguments.begin(), arguments.end());
        setup.m_sFolder = m_folder.Path();
        setup.m_sInput = input;
        return RunProcess(setup);
    }

    PlainJson List(std::string const& name) {
        return PlainJson::parse(Tag({"list", "--json", name}).m_sOut);
    }

    void Write(std::string const& name, TagBytes const& bytes) {
        WriteBytes(m_folder / name, bytes);
    }

    CTempFolder m_folder;
};

TEST_F(TagTest, GetPrintsTheText) {
    Write(
        "a.mp3",
        Joined({TagOf(3, Joined({Frame23("TIT2", WrittenText("Title")),
                                 Frame23("COMM",
                                         Joined({{0x00}, Ascii("eng"), {0x00}, Ascii("Words")}))})),
                kSound}));
    CProcessResult const title = Tag({"get", "a.mp3", "TIT2"});
    EXPECT_EQ(title.m_nExit, 0);
    EXPECT_EQ(title.m_sOut, "Title\n");
    EXPECT_EQ(title.m_sErr, "");
    EXPECT_EQ(Tag({"get", "a.mp3", "COMM"}).m_sOut, "Words\n");
    EXPECT_EQ(Tag({"get", "-", "TIT2"}, m_folder / "a.mp3").m_sOut, "Title\n");
}

TEST_F(TagTest, GetOfWhatIsNotThereIsOne) {
    Write("a.mp3", Joined({TagOf(3, Frame23("TIT2", WrittenText("Title"))), kSound}));
    CProcessResult const missing = Tag({"get", "a.mp3", "TBPM"});
    EXPECT_EQ(missing.m_nExit, 1);
    EXPECT_EQ(missing.m_sOut, "");
    EXPECT_EQ(missing.m_sErr, "tactus: a.mp3: has no TBPM\n");
    Write("b.mp3", kSound);
    EXPECT_EQ(Tag({"get", "b.mp3", "TIT2"}).m_nExit, 1);
    Write("c.mp3", Joined({kSound, Id3v1Trailer("Song", "", "", "", 17)}));
    EXPECT_EQ(Tag({"get", "c.mp3", "TIT2"}).m_nExit, 1);
    CProcessResult const noFile = Tag({"get", "none.mp3", "TIT2"});
    EXPECT_EQ(noFile.m_nExit, 1);
    EXPECT_EQ(noFile.m_sErr, "tactus: none.mp3: No such file or directory\n");
}

TEST_F(TagTest, SetWritesAndSaysNothing) {
    Write("a.mp3", kSound);
    CProcessResult const result = Tag({"set", "a.mp3", "TBPM", "128.00"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_EQ(result.m_sOut + result.m_sErr, "");
    EXPECT_EQ(
        ReadBytes(m_folder / "a.mp3"),
        Joined({TagOf(3, Joined({Frame23("TBPM", WrittenText("128.00")), Zeros(4096)})), kSound}));
    EXPECT_EQ(Tag({"get", "a.mp3", "TBPM"}).m_sOut, "128.00\n");
}

TEST_F(TagTest, SetTakesAnyTextOfUtf8) {
    for (char const* text :
         {"-5", "[a,b]", "\xF0\x9F\x98\x80 caf\xC3\xA9", "two\nlines", " ", "--"}) {
        Write("a.mp3", kSound);
        EXPECT_EQ(Tag({"set", "a.mp3", "TIT2", "--", text}).m_nExit, 0) << text;
        EXPECT_EQ(Tag({"get", "a.mp3", "TIT2"}).m_sOut, std::string(text) + "\n");
    }
    EXPECT_EQ(Tag({"set", "a.mp3", "TIT2", "caf\xE9"}).m_nExit, 2);
    EXPECT_EQ(Tag({"get", "a.mp3", "TIT2"}).m_sOut, "--\n");
}

TEST_F(TagTest, SetTakesFilesOfAnyName) {
    for (char const* name :
         {"\xF0\x9F\x98\x80.mp3", "caf\xE9.mp3", "-x.mp3", "[a].mp3", "a b.MP3"}) {
        Write(name, kSound);
        EXPECT_EQ(Tag({"set", "--", name, "TBPM", "90"}).m_nExit, 0) << name;
        EXPECT_EQ(Tag({"get", "--", name, "TBPM"}).m_sOut, "90\n") << name;
    }
}

TEST_F(TagTest, SetOfAnEmptyTextEmptiesTheFrame) {
    Write("a.mp3", Joined({TagOf(3, Frame23("TBPM", WrittenText("128"))), kSound}));
    EXPECT_EQ(Tag({"set", "a.mp3", "TBPM", ""}).m_nExit, 0);
    EXPECT_EQ(List("a.mp3")["frames"][0]["text"], "");
    Write("b.mp3", kSound);
    EXPECT_EQ(Tag({"set", "b.mp3", "TBPM", ""}).m_nExit, 0);
    EXPECT_EQ(ReadBytes(m_folder / "b.mp3"), kSound);
}

TEST_F(TagTest, SetSaysWhyItDidNot) {
    struct CCase {
        std::string m_sName;
        TagBytes m_vBytes;
        std::string m_sReason;
    };
    TagBytes const title = Frame23("TIT2", Latin1Text("Title"));
    for (CCase const& c : {
             CCase{"a.wav", kSound, "only .mp3 files are"},
             CCase{"b.mp3", Joined({TagHeader(3, 9000), title}), "its tag can't be read"},
             CCase{"c.mp3", TagOf(3, Joined({title, Zeros(30), {1}})), "data that would be lost"},
             CCase{"e.mp3", Joined({TagOf(3, title), FakeAudio(5000)}), "it isn't MPEG audio"},
             CCase{"f.mp3", Ascii("<!DOCTYPE html><html></html>"), "it isn't MPEG audio"},
             CCase{"g.mp3", Joined({TagOf(4, Frame24("TIT2", {0, 0, 0, 1, 0}, 0, 1)), kSound}),
                   "compressed, encrypted or grouped"},
         }) {
        Write(c.m_sName, c.m_vBytes);
        CProcessResult const result = Tag({"set", c.m_sName, "TBPM", "128"});
        EXPECT_EQ(result.m_nExit, 1);
        EXPECT_EQ(result.m_sOut, "");
        EXPECT_THAT(result.m_sErr, testing::StartsWith("tactus: " + c.m_sName + ": "));
        EXPECT_THAT(result.m_sErr, HasSubstr(c.m_sReason));
        EXPECT_EQ(ReadBytes(m_folder / c.m_sName), c.m_vBytes);
    }
    Write("d.mp3", kSound);
    std::filesystem::create_directory(m_folder / "d.MP~");
    CProcessResult const result = Tag({"set", "d.mp3", "TBPM", "128"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sErr, HasSubstr("no new file can be made"));
    ASSERT_EQ(::mkfifo((m_folder / "fifo.mp3").c_str(), 0600), 0);
    EXPECT_THAT(Tag({"set", "fifo.mp3", "TBPM", "128"}).m_sErr, HasSubstr("is no plain file"));
    EXPECT_EQ(Tag({"set", "none.mp3", "TBPM", "128"}).m_nExit, 1);
}

TEST_F(TagTest, SetRefusesFramesThatAreNoText) {
    TagBytes const bytes =
        Joined({TagOf(3, Joined({Frame23("APIC", {1, 2, 3}), Frame23("TXXX", {0, 'a', 0, 'b'})})),
                kSound});
    Write("a.mp3", bytes);
    for (char const* id : {"APIC", "TXXX", "PRIV", "tbpm", "TBP", "TBPMX", "", "T\xC3\x84X"}) {
        EXPECT_EQ(Tag({"set", "a.mp3", id, "128"}).m_nExit, 2) << id;
    }
    EXPECT_EQ(Tag({"set", "-", "TBPM", "128"}).m_nExit, 2);
    EXPECT_EQ(Tag({"get", "a.mp3", "tbpm"}).m_nExit, 2);
    EXPECT_EQ(ReadBytes(m_folder / "a.mp3"), bytes);
}

TEST_F(TagTest, WrongUsageIsTwo) {
    for (std::vector<std::string> const& arguments : {std::vector<std::string>{},
                                                      {"bogus"},
                                                      {"get"},
                                                      {"get", "a.mp3"},
                                                      {"get", "a.mp3", "TBPM", "x"},
                                                      {"set", "a.mp3", "TBPM"},
                                                      {"set", "a.mp3", "TBPM", "1", "2"},
                                                      {"list"},
                                                      {"list", "--bogus", "a.mp3"}}) {
        CProcessResult const result = Tag(arguments);
        EXPECT_EQ(result.m_nExit, 2) << testing::PrintToString(arguments);
        EXPECT_EQ(result.m_sOut, "");
    }
    EXPECT_EQ(Tag({"set", "--help"}).m_nExit, 0);
}

TEST_F(TagTest, ListTellsEveryFrame) {
    TagBytes const picture = Joined({{0x00}, Ascii("PNG"), {0x03}, Ascii("d"), {0x00}, Zeros(9)});
    Write("v22.mp3",
          Joined({TagOf(2, Joined({Frame22("TT2", Latin1Text("Title")), Frame22("PIC", picture)})),
                  kSound}));
    EXPECT_EQ(List("v22.mp3"), PlainJson::parse(R"({
        "status": 0, "version": [2, 0], "tagSize": 44, "frames": [
            {"id": "TIT2", "flags": [0, 0], "size": 6, "text": "Title"},
            {"id": "APIC", "flags": [0, 0], "size": 23, "text": null}]})"));
    TagBytes tag = TagOf(
        4, Joined({Frame24("TPE1", {0xFF, 0x41, 0x00}, 0x20, 0x41),
                   Frame24("APIC", {0xFF, 0x00, 0xE0}, 0x00, 0x03), Frame24("TIT2", {0x01, 0x41}),
                   Frame24("COMM", {0x00, 'e', 'n', 'g', 0x00, 'x'}),
                   Frame24("TBPM", Latin1Text(std::string("1\0002", 3)))}));
    tag[4] = 9; // the revision
    Write("v24.mp3", tag);
    EXPECT_EQ(List("v24.mp3"), PlainJson::parse(R"({
        "status": 0, "version": [4, 9], "tagSize": 78, "frames": [
            {"id": "TPE1", "flags": [32, 65], "size": 3, "text": "A"},
            {"id": "APIC", "flags": [0, 1], "size": 2, "text": null},
            {"id": "TIT2", "flags": [0, 0], "size": 2, "text": null},
            {"id": "COMM", "flags": [0, 0], "size": 6, "text": "x"},
            {"id": "TBPM", "flags": [0, 0], "size": 4, "text": "1"}]})"));
}

TEST_F(TagTest, ListTellsWhenThereIsNoTag) {
    Write("plain.mp3", kSound);
    EXPECT_EQ(List("plain.mp3"),
              PlainJson::parse(R"({"status": 1, "version": [0, 0], "tagSize": 0, "frames": []})"));
    EXPECT_EQ(Tag({"list", "plain.mp3"}).m_sOut, "no ID3v2 tag\n");
    EXPECT_EQ(Tag({"list", "plain.mp3"}).m_nExit, 0);
    Write("v5.mp3", TagOf(5, Zeros(20)));
    EXPECT_EQ(List("v5.mp3"),
              PlainJson::parse(R"({"status": 1, "version": [5, 0], "tagSize": 0, "frames": []})"));
}

TEST_F(TagTest, ListFailsOnWhatItCannotRead) {
    CProcessResult const missing = Tag({"list", "--json", "none.mp3"});
    EXPECT_EQ(missing.m_nExit, 1);
    EXPECT_EQ(missing.m_sErr, "tactus: none.mp3: No such file or directory\n");
    EXPECT_EQ(PlainJson::parse(missing.m_sOut)["status"], -2147483640);
    Write("short.mp3", Joined({TagHeader(3, 100), Zeros(50)}));
    CProcessResult const cut = Tag({"list", "short.mp3"});
    EXPECT_EQ(cut.m_nExit, 1);
    EXPECT_EQ(cut.m_sOut, "");
    EXPECT_EQ(cut.m_sErr, "tactus: short.mp3: its tag can't be read\n");
}

TEST_F(TagTest, ListForAPersonHasNoControlCharacters) {
    Write("a.mp3", TagOf(3, Frame23("TIT2", Latin1Text("a\033[2Jb"), 0x40, 0x01)));
    EXPECT_EQ(Tag({"list", "a.mp3"}).m_sOut,
              "ID3v2.3.0, 27 bytes\nTIT2  40 01          7  a\xEF\xBF\xBD[2Jb\n");
}

TEST_F(TagTest, ListKeepsIdsThatAreNoText) {
    TagBytes frame = Frame23("TIT2", Latin1Text("x"));
    frame[1] = 0xFF;
    Write("a.mp3", TagOf(3, frame));
    EXPECT_EQ(List("a.mp3")["frames"][0]["id"], "T\xEF\xBF\xBDT2");
}

TEST_F(TagTest, LinkToAnotherKindOfFileIsNotWritten) {
    Write("key.pem", kSound);
    std::filesystem::create_symlink("key.pem", m_folder / "a.mp3");
    CProcessResult const result = Tag({"set", "a.mp3", "TBPM", "128"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_EQ(result.m_sErr,
              "tactus: a.mp3: isn't written: it is a link to a file of another kind\n");
    EXPECT_EQ(ReadBytes(m_folder / "key.pem"), kSound);
}

TEST_F(TagTest, Version22IdsOfPlayersAreConvertedAndTold) {
    Write(
        "podcast.mp3",
        Joined({TagOf(2, Joined({Frame22("TT2", Latin1Text("Title")), Frame22("PCS", {0, 0, 0, 0}),
                                 Frame22("GP1", Latin1Text("Group"))})),
                kSound}));
    EXPECT_EQ(Tag({"get", "podcast.mp3", "TIT2"}).m_sOut, "Title\n");
    EXPECT_EQ(Tag({"get", "podcast.mp3", "GRP1"}).m_sOut, "Group\n");
    CProcessResult const result = Tag({"set", "podcast.mp3", "TBPM", "128"});
    EXPECT_EQ(result.m_nExit, 0);
    EXPECT_EQ(result.m_sOut, "");
    EXPECT_EQ(result.m_sErr, "tactus: podcast.mp3: its ID3v2.2 tag became one of version 2.3: "
                             "PCS is now PCST, GP1 is now GRP1\n");
    EXPECT_EQ(Tag({"get", "podcast.mp3", "GRP1"}).m_sOut, "Group\n");
}

TEST_F(TagTest, UnknownVersion22IdIsListedAndNotWritten) {
    TagBytes const bytes = Joined(
        {TagOf(2, Joined({Frame22("ZZZ", {1, 2}), Frame22("TT2", Latin1Text("Title"))})), kSound});
    Write("odd.mp3", bytes);
    EXPECT_EQ(Tag({"get", "odd.mp3", "TIT2"}).m_sOut, "Title\n");
    EXPECT_EQ(List("odd.mp3")["frames"], PlainJson::parse(R"([
        {"id": "ZZZ", "flags": [0, 0], "size": 2, "text": null},
        {"id": "TIT2", "flags": [0, 0], "size": 6, "text": "Title"}])"));
    CProcessResult const result = Tag({"set", "odd.mp3", "TBPM", "1"});
    EXPECT_EQ(result.m_nExit, 1);
    EXPECT_THAT(result.m_sErr, HasSubstr("unknown kind of frame"));
    EXPECT_EQ(ReadBytes(m_folder / "odd.mp3"), bytes);
}

TEST_F(TagTest, NoTagEndsTheProcess) {
    TagBytes const title = Frame23("TIT2", Latin1Text("Title"));
    TagBytes huge = title;
    huge[4] = 0xFF;
    TagBytes many;
    for (int i = 0; i < 70'000; ++i) {
        many.insert(many.end(), {'T', 'X', 'X', 'X', 0, 0, 0, 1, 0, 0, 0});
    }
    std::vector<TagBytes> const tags = {
        {},
        Ascii("ID3"),
        TagHeader(3, 0x0FFFFFFF),
        TagOf(2, Frame22("PCS", {0, 0, 0, 0})),
        TagOf(2, Frame22("\xFF\xFF\xFF", {0})),
        TagOf(2, Joined({Ascii("TT2"), {0xFF, 0xFF, 0xFF}})),
        TagOf(2, Joined({Frame22("PIC", {}), Zeros(9)})),
        TagOf(3, huge),
        TagOf(3, Frame23("COMM", {1})),
        TagOf(3, Frame23("TIT2", {1, 0xFF})),
        TagOf(3, Joined({{0x7F, 0x7F, 0x7F, 0x7F}, title}), 0x40),
        TagOf(3, many),
        TagOf(4, Frame24("TBPM", {0, 0}, 0, 0xFF)),
        TagOf(4, Frame24("TBPM", {0xFF, 0, 0, 0}, 0, 0x43), 0x80),
    };
    for (TagBytes const& tag : tags) {
        TagBytes const bytes = Joined({tag, kSound});
        Write("a.mp3", bytes);
        for (std::vector<std::string> const& arguments :
             {std::vector<std::string>{"get", "a.mp3", "TBPM"},
              {"get", "a.mp3", "COMM"},
              {"list", "a.mp3"},
              {"list", "--json", "a.mp3"},
              {"set", "a.mp3", "TBPM", "128"}}) {
            CProcessResult const result = Tag(arguments);
            EXPECT_EQ(result.m_nSignal, 0) << testing::PrintToString(arguments) << tag.size();
            EXPECT_TRUE(result.m_nExit == 0 || result.m_nExit == 1) << result.m_nExit;
        }
        // Written or not, the sound is there.
        TagBytes const after = ReadBytes(m_folder / "a.mp3");
        ASSERT_GE(after.size(), kSound.size());
        EXPECT_TRUE(std::equal(kSound.rbegin(), kSound.rend(), after.rbegin()));
    }
}

} // namespace
