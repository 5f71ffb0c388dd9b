// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/TempoLine.h"

#include "Language.h"

#include <QLabel>
#include <QMouseEvent>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>
#include <gtest/gtest.h>

namespace {

struct TempoLineTest : testing::Test {
    TempoLineTest() {
        line.show();
        line.setCandidates({{.m_fBpm = 94.99f, .m_nTimes = 1, .m_nOver = 1, .m_fScore = 0.6f},
                            {.m_fBpm = 189.98f, .m_nTimes = 2, .m_nOver = 1, .m_fScore = 0.25f},
                            {.m_fBpm = 142.49f, .m_nTimes = 3, .m_nOver = 2, .m_fScore = 0.1f},
                            {.m_fBpm = 47.5f, .m_nTimes = 1, .m_nOver = 2, .m_fScore = 0.05f}});
    }

    QRadioButton* reading(int number) const {
        return line.findChild<QRadioButton*>(QString("reading%1").arg(number));
    }
    std::string taps() const { return line.findChild<QLabel*>("taps")->text().toStdString(); }

    CLanguage english{QLocale(QLocale::English, QLocale::UnitedStates)};
    CTempoLine line;
    QSignalSpy chosen{&line, &CTempoLine::tempoChosen};
};

} // namespace

TEST_F(TempoLineTest, TheLikeliestReadingsAreShownWithTheirRatios) {
    EXPECT_EQ(reading(1)->text(), "94.99 · 60 %");
    EXPECT_EQ(reading(2)->text(), "189.98 · ×2 · 25 %");
    EXPECT_EQ(reading(3)->text(), "142.49 · 3:2 · 10 %");
    EXPECT_EQ(reading(4), nullptr);
}

TEST_F(TempoLineTest, TheReadingThatTheSongHasIsOn) {
    line.setTempo(189.98);
    EXPECT_TRUE(reading(2)->isChecked());
    line.setTempo(94.99);
    EXPECT_TRUE(reading(1)->isChecked());
    EXPECT_FALSE(reading(2)->isChecked());
    line.setTempo(190.0);
    EXPECT_FALSE(reading(2)->isChecked());
    line.setTempo(189.99); // one hundredth off, as what was rounded twice may be
    EXPECT_TRUE(reading(2)->isChecked());
    line.setTempo(100.0);
    EXPECT_FALSE(reading(1)->isChecked());
    EXPECT_EQ(chosen.count(), 0);
}

TEST_F(TempoLineTest, AClickTakesAReading) {
    line.setTempo(94.99);
    QTest::mouseClick(reading(2), Qt::LeftButton, {}, QPoint(8, reading(2)->height() / 2));
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].toDouble(), static_cast<double>(189.98f));
}

TEST_F(TempoLineTest, TapsCountByTheTimesOfTheirEvents) {
    EXPECT_EQ(taps(), "");
    line.tap(10'000);
    EXPECT_EQ(taps(), "1 tap …");
    EXPECT_FALSE(line.takeTapped());
    for (std::uint64_t const time : {10'630U, 11'260U, 11'890U}) {
        line.tap(time); // 0.63 s: 95.24 BPM
    }
    EXPECT_EQ(taps(), "4 taps: 95.2 ± 0.0, Enter takes 94.99");
    EXPECT_TRUE(line.takeTapped());
    ASSERT_EQ(chosen.count(), 1);
    EXPECT_EQ(chosen[0][0].toDouble(), static_cast<double>(94.99f));
    EXPECT_EQ(taps(), "");
}

TEST_F(TempoLineTest, TheButtonTapsWhenItGoesDown) {
    auto* button = line.findChild<QToolButton*>("tapButton");
    QPointF const place = button->rect().center();
    for (std::uint64_t const time : {5'000U, 5'500U, 6'000U, 6'500U}) {
        QMouseEvent press(QEvent::MouseButtonPress, place, button->mapToGlobal(place),
                          Qt::LeftButton, Qt::LeftButton, {});
        press.setTimestamp(time);
        QApplication::sendEvent(button, &press);
        QMouseEvent release(QEvent::MouseButtonRelease, place, button->mapToGlobal(place),
                            Qt::LeftButton, {}, {});
        release.setTimestamp(time + 77);
        QApplication::sendEvent(button, &release);
    }
    EXPECT_EQ(taps(), "4 taps: 120.0 ± 0.0, Enter takes 120.00");
}

TEST_F(TempoLineTest, AnotherSongBeginsAnew) {
    line.tap(1'000);
    line.setCandidates({});
    EXPECT_EQ(taps(), "");
    EXPECT_EQ(reading(1), nullptr);
}

TEST_F(TempoLineTest, SignsStayBeforeTheirFiguresFromRightToLeft) {
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    line.setCandidates({{.m_fBpm = 189.98f, .m_nTimes = 2, .m_nOver = 1, .m_fScore = 0.25f}});
    QString const text = reading(1)->text();
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    // Left-to-right isolate, and its end.
    EXPECT_TRUE(text.contains(QStringLiteral("\u2066×2\u2069"))) << text.toStdString();
}
