// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/BPMController.h"
#include "app/RowTags.h"
#include "support/ClickTrack.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <gtest/gtest.h>
#include <iterator>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

/// A window that only takes notes.
class FakeView : public IBpmView {
public:
    void reloadRow(std::size_t row) override {
        note([&] { m_vReloaded.push_back(row); });
    }
    void reloadAll() override {
        note([&] { ++m_nReloads; });
    }
    void rowsAdded() override {
        note([&] { ++m_nAdded; });
    }
    void statusChanged() override {}
    void setCanClose(bool canClose) override {
        note([&] { m_vCanClose.push_back(canClose); });
    }
    void openHomePage() override {
        note([&] { ++m_nHelps; });
    }

    std::vector<std::size_t> reloaded() const { return copy(m_vReloaded); }
    std::vector<bool> canClose() const { return copy(m_vCanClose); }
    int helps() const { return copy(m_nHelps); }
    int added() const { return copy(m_nAdded); }

private:
    template <typename Change>
    void note(Change change) {
        std::scoped_lock const guard(m_lock);
        change();
    }

    template <typename Value>
    Value copy(Value const& value) const {
        std::scoped_lock const guard(m_lock);
        return value;
    }

    mutable std::mutex m_lock;
    std::vector<std::size_t> m_vReloaded;
    std::vector<bool> m_vCanClose;
    int m_nReloads = 0;
    int m_nAdded = 0;
    int m_nHelps = 0;
};

using Bytes = std::vector<std::uint8_t>;

template <typename Range>
void Append(Bytes& bytes, Range const& more) {
    std::copy(more.begin(), more.end(), std::back_inserter(bytes));
}

/// An ID3v2.3 frame with Latin-1 text: id, size, flags, encoding 0, the text.
inline Bytes TextFrame(std::string_view id, std::string_view text) {
    auto const size = static_cast<std::uint8_t>(text.size() + 1);
    Bytes frame;
    Append(frame, id);
    Append(frame, Bytes{0, 0, 0, size});
    Append(frame, Bytes{0, 0});
    Append(frame, Bytes{0});
    Append(frame, text);
    return frame;
}

/// A tag of the given version: "ID3", version, flags, syncsafe size (under 16 KB), the frames.
inline Bytes Tag(std::uint8_t version, std::vector<Bytes> const& frames) {
    Bytes body;
    for (Bytes const& frame : frames) {
        Append(body, frame);
    }
    auto const high = static_cast<std::uint8_t>(body.size() / 128);
    auto const low = static_cast<std::uint8_t>(body.size() % 128);
    Bytes tag;
    Append(tag, std::string_view("ID3"));
    Append(tag, Bytes{version, 0});
    Append(tag, Bytes{0});
    Append(tag, Bytes{0, 0, high, low});
    Append(tag, body);
    return tag;
}

/// A controller over a window that takes notes, and a folder of short files.
struct ControllerTest : testing::Test {
    ControllerTest() { controller.awakeFromNib(); }

    /// Waits until nothing is added or analysed any more.
    void waitUntilIdle() const {
        waitFor([this] {
            CBatchStatus const status = controller.status();
            return !status.m_bAdding && !status.m_bRunning;
        });
    }

    template <typename Condition>
    static void waitFor(Condition condition) {
        using namespace std::chrono_literals;
        for (int i = 0; i < 60'000 && !condition(); ++i) {
            std::this_thread::sleep_for(1ms);
        }
        ASSERT_TRUE(condition());
    }

    static CString path(std::string const& bytes) { return CString::FromPath(bytes); }

    /// Writes a clip of one second, whose tempo by its length is 120.00, as an MP3 file.
    std::string writeClip(std::string const& name, Bytes const& tag = {}) const {
        static Bytes const clip = makeClip();
        Bytes bytes = tag;
        Append(bytes, clip);
        WriteBytes(folder / name, bytes);
        return folder / name;
    }

    /// Writes a file that takes far longer to analyse than a test waits.
    std::string writeLong(std::string const& name) const {
        constexpr std::uint32_t kBytes = 15 * 60 * 88200; // a quarter of an hour, all zeros
        CWavShape shape;
        shape.m_nClaimedData = kBytes;
        WriteBytes(folder / name, MakeWav(shape, {}));
        std::filesystem::resize_file(folder / name, kBytes + 44);
        return folder / name;
    }

    std::string text(std::int32_t column, std::size_t row) const {
        return CString(controller.objectValueForTableColumn(column, row)).ToUtf8();
    }
    std::string title(std::size_t row) const { return text(0, row); }
    std::string artist(std::size_t row) const { return text(1, row); }
    std::string tempo(std::size_t row) const { return text(2, row); }
    bool isDone(std::size_t row) const { return controller.rowState(row).m_bDone; }

    CTempFolder folder;
    FakeView view;
    BPMController controller{view};

private:
    static Bytes makeClip() {
        CTempFolder const scratch;
        WriteWav(scratch / "clip.wav", MakeClickTrack(120.0, 1.0));
        Ffmpeg({"-i", scratch / "clip.wav", "-map_metadata", "-1", "-id3v2_version", "0",
                "-write_xing", "1", scratch / "clip.mp3"});
        return ReadBytes(scratch / "clip.mp3");
    }
};
