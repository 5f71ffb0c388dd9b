// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SongPane.h"

#include "desktop/AccentsView.h"
#include "desktop/PictureView.h"
#include "desktop/SoundControls.h"
#include "desktop/Tints.h"
#include "song/BeatTimes.h"
#include "support/ClickTrack.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <thread>

namespace {

constexpr std::int64_t kBeat = 22050; // of 120 BPM

/// A minute at 120 BPM whose downbeat is at 0, full of energy and without bass.
std::shared_ptr<CSongPicture> MinuteOfMusic() {
    auto picture = std::make_shared<CSongPicture>();
    picture->m_nSamples = 60 * 44100;
    picture->m_fBpm = 120.0f;
    picture->m_outcome.m_report.m_container = EContainer::Wav;
    picture->m_vEnergy.assign(60 * 44100 / 256, 255);
    picture->m_vBass.assign(60 * 44100 / 256, 0);
    CBeatTimes heard{.m_vHalfBeats = {}, .m_nBeatsPerMeasure = 4};
    for (int i = 0; i < 240; ++i) {
        heard.m_vHalfBeats.push_back(
            {.m_dSeconds = i / 4.0,
             .m_nPlace = static_cast<std::uint8_t>(i % 2 == 0 ? i / 2 % 4 + 1 : 0)});
    }
    picture->m_grid = CBeatGrid(heard, picture->m_nSamples);
    picture->m_fAccentsA[0] = 1.0f;
    return picture;
}

/// Gives a minute for every path but "gone", which has a reason, and "slow", which waits.
class CFakeSource final : public IPictureSource {
public:
    CSongPicturePtr Get(std::string const& path, CCancelFlag const& cancel) override {
        while (path == "slow" && !cancel.IsSet()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        if (path == "gone") {
            auto picture = std::make_shared<CSongPicture>();
            picture->m_outcome.m_problem = EAnalysisProblem::NotDecoded;
            picture->m_outcome.m_report.m_problem = EDecodeProblem::NotAudio;
            return picture;
        }
        return MinuteOfMusic();
    }
};

/// A device that hears a block at a time, when it is told to.
class CFakeOutput final : public ISoundOutput {
public:
    int rate() const override { return 48000; }
    bool start(Render render) override {
        m_render = std::move(render);
        m_nHeard = 0;
        return true;
    }
    void stop() override { m_render = nullptr; }
    std::int64_t heardFrames() const override { return m_nHeard; }
    bool hasEnded() const override { return m_bEnded; }

    std::vector<float> hear(std::size_t frames) {
        std::vector<float> block(2 * frames);
        std::size_t const done = m_render(block);
        m_bEnded = done < frames;
        m_nHeard += static_cast<std::int64_t>(done);
        return block;
    }

    Render m_render;
    std::int64_t m_nHeard = 0;
    bool m_bEnded = false;
};

struct SongPaneTest : testing::Test {
    SongPaneTest() {
        pane.resize(800, 300);
        pane.show();
        pane.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&pane));
    }

    void choose(std::string const& path) {
        QSignalSpy settled(&pane, &CSongPane::settled);
        pane.setSong(CPaneSong{path, "Feelings", "Some band"});
        EXPECT_TRUE(settled.wait(10'000));
    }

    std::string label(char const* name) const {
        return pane.findChild<QLabel*>(name)->text().toStdString();
    }

    /// Turns the wheel by `steps` away from the user at `x`.
    void wheel(double x, int steps) {
        QPointF const place(x, 40.0);
        QWheelEvent event(place, strip->mapToGlobal(place), {}, {0, steps * 120}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(strip, &event);
    }

    CFakeSource source;
    CSongPane pane{source, {nullptr, ESoundProblem::NoPart}};
    CSongBar* bar = pane.findChild<CSongBar*>("songBar");
    CBeatStrip* strip = pane.findChild<CBeatStrip*>("beatStrip");
};

} // namespace

TEST_F(SongPaneTest, WithoutASongItSaysWhatToDo) {
    EXPECT_EQ(label("paneMessage"), "Select a song to see it here.");
    EXPECT_FALSE(strip->isVisible());
    EXPECT_EQ(pane.picture(), nullptr);
}

TEST_F(SongPaneTest, ItSaysReadingUntilThePictureIsThere) {
    pane.setSong(CPaneSong{"slow", "Feelings", ""});
    EXPECT_EQ(label("paneMessage"), "Reading “Feelings” …");
    EXPECT_TRUE(pane.findChild<QLabel*>("paneMessage")->isVisible());
    choose("song");
    EXPECT_FALSE(pane.findChild<QLabel*>("paneMessage")->isVisible());
    EXPECT_TRUE(strip->isVisible());
    EXPECT_EQ(label("paneTitle"), "Feelings – Some band");
    EXPECT_EQ(label("paneFacts"), "WAV · 1:00 · 4/4");
    EXPECT_EQ(label("panePlace"), "0:00.0");
}

TEST_F(SongPaneTest, AFileThatIsNoMusicHasItsReason) {
    choose("song");
    choose("gone");
    EXPECT_EQ(label("paneMessage"), "No tempo: it is not an audio file that can be read");
    EXPECT_FALSE(strip->isVisible());
    EXPECT_EQ(pane.picture(), nullptr);
}

TEST_F(SongPaneTest, AnotherSongCancelsTheOneBefore) {
    QSignalSpy settled(&pane, &CSongPane::settled);
    pane.setSong(CPaneSong{"slow", "One", ""});
    pane.setSong(CPaneSong{"gone", "Two", ""});
    pane.setSong(CPaneSong{"song", "Three", ""});
    EXPECT_TRUE(settled.wait(10'000));
    QTest::qWait(50);
    EXPECT_EQ(settled.count(), 1);
    EXPECT_EQ(label("paneTitle"), "Three");
    pane.setSong(std::nullopt);
    EXPECT_EQ(pane.picture(), nullptr);
}

TEST_F(SongPaneTest, ArrowsGoFromBeatToBeatAndWithCtrlFromMeasureToMeasure) {
    choose("song");
    pane.takeFocus();
    EXPECT_TRUE(strip->hasFocus());
    QTest::keyClick(strip, Qt::Key_Right);
    EXPECT_EQ(pane.place(), kBeat);
    QTest::keyClick(strip, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(pane.place(), 4 * kBeat);
    QTest::keyClick(strip, Qt::Key_Left);
    EXPECT_EQ(pane.place(), 3 * kBeat);
    QTest::keyClick(strip, Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(pane.place(), 0);
    QTest::keyClick(strip, Qt::Key_Left);
    EXPECT_EQ(pane.place(), 0);
    QTest::keyClick(strip, Qt::Key_End);
    EXPECT_EQ(pane.place(), 60 * 44100 - 1);
    QTest::keyClick(strip, Qt::Key_Home);
    EXPECT_EQ(pane.place(), 0);
    EXPECT_EQ(label("panePlace"), "0:00.0");
}

TEST_F(SongPaneTest, APressInTheWholeSongGoesThere) {
    choose("song");
    QTest::mouseClick(bar, Qt::LeftButton, {}, {bar->width() / 2, 10});
    // A pixel is 60 s over some 780 pixels.
    EXPECT_NEAR(static_cast<double>(pane.place()), 30 * 44100.0, 44100.0 * 60 / bar->width());
    EXPECT_EQ(bar->place(), strip->place());
    // The strip has followed.
    EXPECT_LE(strip->span().m_dFirst, static_cast<double>(pane.place()));
    EXPECT_GE(strip->span().Last(), static_cast<double>(pane.place()));
}

TEST_F(SongPaneTest, TheStripShowsEightSecondsAtFirst) {
    choose("song");
    EXPECT_EQ(strip->span().m_dFirst, 0.0);
    EXPECT_NEAR(strip->span().Last(), 8 * 44100.0, 1.0);
}

TEST_F(SongPaneTest, TheWheelZoomsAboutThePointer) {
    choose("song");
    QTest::mouseClick(bar, Qt::LeftButton, {}, {bar->width() / 2, 10});
    double const before = strip->span().SampleAt(300.0);
    double const width = strip->span().Last() - strip->span().m_dFirst;
    wheel(300.0, 2);
    EXPECT_NEAR(strip->span().SampleAt(300.0), before, 1.0);
    EXPECT_NEAR(strip->span().Last() - strip->span().m_dFirst, width / (1.25 * 1.25), 1.0);
    wheel(300.0, 100);
    EXPECT_NEAR(strip->span().Last() - strip->span().m_dFirst, 44100.0, 1.0); // no closer than 1 s
    wheel(300.0, -100);
    EXPECT_EQ(strip->span().m_dFirst, 0.0); // no further than the song
    EXPECT_NEAR(strip->span().Last(), 60 * 44100.0, 1.0);
}

TEST_F(SongPaneTest, ADragPansAndAClickGoes) {
    choose("song");
    QTest::mousePress(strip, Qt::LeftButton, {}, {500, 40});
    QTest::mouseMove(strip, {450, 40});
    QTest::mouseMove(strip, {300, 40});
    QTest::mouseRelease(strip, Qt::LeftButton, {}, {300, 40});
    double const perPixel = strip->span().m_dSamplesPerPixel;
    EXPECT_NEAR(strip->span().m_dFirst, 200 * perPixel, 1.0);
    EXPECT_EQ(pane.place(), 0);
    QTest::mouseClick(strip, Qt::LeftButton, {}, {100, 40});
    EXPECT_NEAR(static_cast<double>(pane.place()), 300 * perPixel, perPixel);
}

TEST_F(SongPaneTest, TheMeasuresAreWhereTheGridHasThem) {
    choose("song");
    QImage const image = strip->grab().toImage();
    QRgb const line = strip->palette().color(QPalette::Text).rgb();
    int const middle = strip->height() / 2;
    for (int measure = 1; measure < 4; ++measure) {
        double const x = strip->span().XOf(static_cast<double>(measure * 4 * kBeat));
        EXPECT_EQ(image.pixel(static_cast<int>(x), middle), line) << measure;
        EXPECT_NE(image.pixel(static_cast<int>(x) + 4, middle), line) << measure;
    }
}

TEST_F(SongPaneTest, ThePointerIsToldTimeMeasureAndBeat) {
    choose("song");
    int const x =
        static_cast<int>(strip->span().XOf(5.5 * kBeat)); // in the second beat of measure 2
    QTest::mouseMove(strip, {x, 40});
    EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::isVisible(); }));
    EXPECT_EQ(QToolTip::text().toStdString(), "0:02.7 · measure 2, beat 2");
    QToolTip::hideText();
}

TEST_F(SongPaneTest, AScreenReaderMeetsASliderWithAPlaceInWords) {
    choose("song");
    QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(strip);
    EXPECT_EQ(seen->role(), QAccessible::Slider);
    EXPECT_EQ(seen->text(QAccessible::Name), "Some measures");
    QTest::keyClick(strip, Qt::Key_Right);
    EXPECT_EQ(seen->text(QAccessible::Value), "0:00.5 · measure 1, beat 2");
    EXPECT_EQ(seen->valueInterface()->currentValue().toLongLong(), kBeat);
    EXPECT_EQ(seen->valueInterface()->maximumValue().toLongLong(), 60 * 44100);
    EXPECT_TRUE(seen->text(QAccessible::Description).contains("120.00 BPM"));
    seen->valueInterface()->setCurrentValue(44100);
    EXPECT_EQ(pane.place(), 44100);
    QAccessibleInterface* whole = QAccessible::queryAccessibleInterface(bar);
    EXPECT_EQ(whole->text(QAccessible::Name), "Whole song");
}

TEST_F(SongPaneTest, AccentsThatAreNotThereAreNotShown) {
    choose("song");
    QList<CAccentsView*> const views = pane.findChildren<CAccentsView*>();
    ASSERT_EQ(views.size(), 2);
    EXPECT_TRUE(views[0]->isVisible());
    EXPECT_EQ(views[0]->accessibleDescription(), "100 0 0 0 0 0 0 0");
    EXPECT_FALSE(views[1]->isVisible());
}

TEST_F(SongPaneTest, TimeGoesFromLeftToRightInEveryScript) {
    pane.setLayoutDirection(Qt::RightToLeft);
    choose("song");
    QTest::mouseClick(bar, Qt::LeftButton, {}, {bar->width() - 2, 10});
    EXPECT_GT(pane.place(), 59 * 44100);
}

TEST_F(SongPaneTest, WithoutThePartThatPlaysTheButtonSaysWhy) {
    choose("song");
    auto* button = pane.findChild<QToolButton*>("panePlay");
    EXPECT_FALSE(button->isEnabled());
    EXPECT_EQ(button->accessibleDescription(), "Playing needs the package tactus-desktop-sound.");
    EXPECT_FALSE(pane.findChild<CSoundControls*>()->isVisible());
    QTest::keyClick(strip, Qt::Key_Space);
    EXPECT_FALSE(pane.isPlaying());
}

TEST(SongPaneSoundTest, SpacePlaysWithClicksAndThePlaceFollowsWhatIsHeard) {
    CTempFolder const folder;
    WriteWav(folder / "song.wav", MakeSilence(60.0));
    CFakeSource source;
    auto made = std::make_unique<CFakeOutput>();
    CFakeOutput& output = *made;
    CSongPane pane(source, {std::move(made), ESoundProblem::None});
    pane.resize(900, 300);
    pane.show();
    QSignalSpy settled(&pane, &CSongPane::settled);
    pane.setSong(CPaneSong{folder / "song.wav", "Song", ""});
    ASSERT_TRUE(settled.wait(10'000));
    auto* strip = pane.findChild<CBeatStrip*>("beatStrip");
    QTest::keyClick(strip, Qt::Key_Right); // to the second beat, at half a second
    QTest::keyClick(strip, Qt::Key_Space);
    ASSERT_TRUE(pane.isPlaying());
    std::vector<float> const sound = output.hear(48000);
    for (std::size_t frame = 0; frame < 48000; frame += 24000) {
        EXPECT_EQ(sound[2 * frame], 0.5f) << frame; // the click's level at first
        EXPECT_EQ(sound[2 * (frame + 23999)], 0.0f) << frame;
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return pane.place() == 3 * kBeat; })); // a second later
    pane.findChild<QSlider*>("clickLevel")->setValue(100);
    EXPECT_EQ(output.hear(10)[0], 1.0f);
    pane.findChild<QComboBox*>("loop")->setCurrentIndex(1); // the first measure, two seconds
    std::vector<float> const loop = output.hear(4 * 48000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return pane.place() < 4 * kBeat; }));
    QTest::keyClick(strip, Qt::Key_Space);
    EXPECT_FALSE(pane.isPlaying());
    pane.setSong(std::nullopt);
}

TEST(SongPaneSoundTest, TheEndOfTheSongEndsThePlaying) {
    CTempFolder const folder;
    WriteWav(folder / "song.wav", MakeSilence(1.0));
    CFakeSource source;
    auto made = std::make_unique<CFakeOutput>();
    CFakeOutput& output = *made;
    CSongPane pane(source, {std::move(made), ESoundProblem::None});
    pane.show();
    QSignalSpy settled(&pane, &CSongPane::settled);
    pane.setSong(CPaneSong{folder / "song.wav", "Song", ""});
    ASSERT_TRUE(settled.wait(10'000));
    pane.findChild<QToolButton*>("panePlay")->click();
    ASSERT_TRUE(pane.isPlaying());
    (void)output.hear(96000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !pane.isPlaying(); }));
    pane.setSong(CPaneSong{"song", "Gone", ""}); // a picture without a file
    ASSERT_TRUE(settled.wait(10'000));
    pane.findChild<QToolButton*>("panePlay")->click();
    EXPECT_FALSE(pane.isPlaying());
}

// The controls of the sound stand in the same line.
TEST_F(SongPaneTest, WhatTheTagSaysHasRoomInASmallWindow) {
    CSongPane sounding(source, {std::make_unique<CFakeOutput>(), ESoundProblem::None});
    sounding.resize(760, 300);
    sounding.show();
    QSignalSpy settled(&sounding, &CSongPane::settled);
    sounding.setSong(CPaneSong{"song", "Feelings", ""});
    ASSERT_TRUE(settled.wait(10'000));
    auto const* tag = sounding.findChild<QLabel*>("paneTag");
    ASSERT_TRUE(QTest::qWaitFor([tag] { return !tag->text().isEmpty(); }));
    EXPECT_EQ(tag->text(), "no tempo in the tag");
    QTest::qWait(0); // the layout follows
    EXPECT_GE(tag->width(), tag->fontMetrics().horizontalAdvance(tag->text()));
}

TEST_F(SongPaneTest, TheFrameOfWhatHasTheKeyboardCanBeSeenOnBlack) {
    QPalette black;
    black.setColor(QPalette::Base, Qt::black);
    black.setColor(QPalette::Text, Qt::white);
    black.setColor(QPalette::Highlight, Qt::yellow);
    pane.setPalette(black);
    choose("song");
    pane.takeFocus();
    QTest::qWait(50);
    QImage const picture = strip->grab().toImage();
    int faint = 0;
    for (int x = 0; x < picture.width(); ++x) {
        faint += Contrast(picture.pixelColor(x, 1), Qt::black) < 3.0 ? 1 : 0;
    }
    EXPECT_EQ(faint, 0);
}
