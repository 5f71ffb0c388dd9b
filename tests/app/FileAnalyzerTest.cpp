// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "app/FileAnalyzer.h"

#include "app/BPMFile.h"
#include "app/MacThread.h"
#include "base/NotificationCenter.h"
#include "engine/PcmReader.h"
#include "engine/ProfileBuilder.h"
#include "engine/ProfileResults.h"
#include "engine/Profiler.h"
#include "support/ClickTrack.h"
#include "support/CommaLocale.h"
#include "support/FailingAllocation.h"
#include "support/Process.h"
#include "support/TempFolder.h"
#include "support/WavFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <vector>

namespace {

using testing::ElementsAre;

/// One posted notification.
struct CPosted {
    std::string m_sName;
    void* m_pFile = nullptr;
    std::string m_sText;
    bool m_bHasInfo = false;
    std::thread::id m_thread;
};

class FileAnalyzerTest : public testing::Test {
protected:
    FileAnalyzerTest() {
        Observe(kFileProgressNotification, kPercentKey);
        Observe(kFileCompleteNotification, kBpmKey);
        Observe(kAnalysisCompleteNotification, "");
    }

    ~FileAnalyzerTest() override {
        for (char const* name : {kFileProgressNotification, kFileCompleteNotification,
                                 kAnalysisCompleteNotification}) {
            CNotificationCenter::Default().RemoveObserver(this, name);
        }
    }

    void Observe(char const* name, char const* key) {
        CNotificationCenter::Default().AddObserver(
            this, name, [this, name, key](CUserInfo const* info) {
                {
                    std::scoped_lock const guard(m_lock);
                    m_vPosted.push_back({name, UserInfoPointer(info, kUserDataKey),
                                         UserInfoText(info, key), info != nullptr,
                                         std::this_thread::get_id()});
                }
                if (m_hook) {
                    m_hook(name);
                }
            });
    }

    /// The texts posted under `name`, in order.
    std::vector<std::string> Texts(std::string const& name) {
        std::scoped_lock const guard(m_lock);
        std::vector<std::string> texts;
        for (CPosted const& posted : m_vPosted) {
            if (posted.m_sName == name) {
                texts.push_back(posted.m_sText);
            }
        }
        return texts;
    }

    CBPMFile& File(std::string const& name) {
        m_vFiles.push_back(std::make_unique<CBPMFile>(CString::FromPath(m_folder / name)));
        return *m_vFiles.back();
    }

    CTempFolder m_folder;
    std::mutex m_lock;
    std::vector<CPosted> m_vPosted;
    std::function<void(std::string const& name)> m_hook;
    std::vector<std::unique_ptr<CBPMFile>> m_vFiles;
};

TEST_F(FileAnalyzerTest, NoFilePostsTheEndAlone) {
    CFileAnalyzer analyzer;
    EXPECT_TRUE(analyzer.Analyze(nullptr));
    analyzer.Wait();
    ASSERT_EQ(m_vPosted.size(), 1U);
    EXPECT_EQ(m_vPosted[0].m_sName, kAnalysisCompleteNotification);
    EXPECT_FALSE(m_vPosted[0].m_bHasInfo);
}

TEST_F(FileAnalyzerTest, MissingFileHasNoTempoAndAReason) {
    CFileAnalyzer analyzer;
    CBPMFile& file = File("none.wav");
    analyzer.Analyze(&file);
    analyzer.Wait();
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("0.00"));
    EXPECT_EQ(m_vPosted.back().m_sName, kAnalysisCompleteNotification);
    EXPECT_EQ(analyzer.GetOutcome().m_problem, EAnalysisProblem::NotDecoded);
    EXPECT_EQ(analyzer.GetOutcome().m_report.m_problem, EDecodeProblem::SystemError);
    EXPECT_EQ(analyzer.GetOutcome().m_report.m_nError, ENOENT);
    EXPECT_FALSE(analyzer.WasCancelled());
}

TEST_F(FileAnalyzerTest, ClipOfTenSecondsRunsItsCourse) {
    // A clip of 10 s is one measure: 240 / 10 = 24, doubled twice. An empty one gives the grid
    // nothing to refine.
    WriteWav(m_folder / "x.wav", MakeSilence(10.0));
    CFileAnalyzer analyzer;
    CBPMFile& file = File("x.wav");
    analyzer.Analyze(&file);
    analyzer.Wait();
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("96.00"));
    EXPECT_EQ(analyzer.GetOutcome().m_problem, EAnalysisProblem::None);

    std::vector<std::string> const progress = Texts(kFileProgressNotification);
    ASSERT_GE(progress.size(), 6U);
    EXPECT_EQ(progress[0], " 0%");
    EXPECT_EQ(progress[1], " 0%");
    std::vector<std::string> const last(progress.end() - 4, progress.end());
    EXPECT_THAT(last, ElementsAre("95%", "98%", "99%", "100%"));

    // Progress, then the tempo, then the end; all with the file and from one other thread.
    ASSERT_EQ(m_vPosted.size(), progress.size() + 2);
    EXPECT_EQ(m_vPosted[m_vPosted.size() - 2].m_sName, kFileCompleteNotification);
    EXPECT_EQ(m_vPosted.back().m_sName, kAnalysisCompleteNotification);
    EXPECT_FALSE(m_vPosted.back().m_bHasInfo);
    for (CPosted const& posted : m_vPosted) {
        EXPECT_EQ(posted.m_thread, m_vPosted[0].m_thread);
        EXPECT_NE(posted.m_thread, std::this_thread::get_id());
        EXPECT_EQ(posted.m_pFile, posted.m_bHasInfo ? &file : nullptr);
    }
}

TEST_F(FileAnalyzerTest, TempoIsTheBuildersOwn) {
    std::vector<float> const track = MakeClickTrack(120.0, 40.0);
    WriteWav(m_folder / "x.wav", track);
    CFileAnalyzer analyzer;
    analyzer.Analyze(&File("x.wav"));
    analyzer.Wait();

    // The file holds the samples rounded to 16 bits.
    std::vector<float> rounded(track.size());
    std::ranges::transform(track, rounded.begin(), [](float sample) {
        return static_cast<float>(std::lround(sample * 32767.0f)) / 32767.0f;
    });
    CPcmReader reader(rounded.data(), static_cast<std::int32_t>(rounded.size()));
    CProfiler profiler(nullptr);
    CProfileResults results;
    CProfileBuilder builder;
    builder.BuildProfile(&profiler, &reader, &results, nullptr, nullptr);
    EXPECT_GT(results.GetBpm(), 0.0f);
    std::array<char, 32> text{};
    (void)std::snprintf(text.data(), text.size(), "%3.2f", static_cast<double>(results.GetBpm()));
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre(text.data()));
}

TEST_F(FileAnalyzerTest, TempoHasAPointInEveryLocale) {
    CCommaLocale const locale;
    if (!locale.IsSet()) {
        GTEST_SKIP() << "needs localedef and the sources of locales";
    }
    WriteWav(m_folder / "x.wav", MakeSilence(10.0));
    CFileAnalyzer analyzer;
    analyzer.Analyze(&File("x.wav"));
    analyzer.Wait();
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("96.00"));
}

TEST_F(FileAnalyzerTest, FailureLeavesNothingOfTheFileBefore) {
    WriteWav(m_folder / "x.wav", MakeSilence(10.0));
    CFileAnalyzer analyzer;
    for (char const* name : {"x.wav", "none.wav", "x.wav"}) {
        analyzer.Analyze(&File(name));
        analyzer.Wait();
    }
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("96.00", "0.00", "96.00"));
    EXPECT_EQ(analyzer.GetOutcome().m_problem, EAnalysisProblem::None);
}

TEST_F(FileAnalyzerTest, ChainFromTheLastNotificationKeepsTwoThreadsAtMost) {
    constexpr int kFiles = 50;
    WriteWav(m_folder / "x.wav", MakeSilence(0.5));
    CFileAnalyzer analyzer;
    std::atomic<int> left = kFiles - 1;
    std::atomic<int> most = 0;
    m_hook = [&](std::string const& name) {
        most = std::max(most.load(), MacThread::getObjectCount());
        if (name == kAnalysisCompleteNotification && left-- > 0) {
            analyzer.Analyze(&File(left % 2 == 0 ? "x.wav" : "none.wav"));
            most = std::max(most.load(), MacThread::getObjectCount());
        }
    };
    analyzer.Analyze(&File("x.wav"));
    while (Texts(kAnalysisCompleteNotification).size() < kFiles) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    analyzer.Wait();
    EXPECT_EQ(Texts(kFileCompleteNotification).size(), static_cast<std::size_t>(kFiles));
    EXPECT_LE(most, 2);
    EXPECT_EQ(MacThread::getObjectCount(), 0);
}

TEST_F(FileAnalyzerTest, WaitCoversWhatTheHandlersStart) {
    WriteWav(m_folder / "x.wav", MakeSilence(0.5));
    CFileAnalyzer analyzer;
    std::atomic<int> left = 10;
    m_hook = [&](std::string const& name) {
        if (name == kAnalysisCompleteNotification && left-- > 0) {
            analyzer.Analyze(&File("x.wav"));
        }
    };
    analyzer.Analyze(&File("x.wav"));
    analyzer.Wait();
    EXPECT_EQ(Texts(kFileCompleteNotification).size(), 11U);
}

TEST_F(FileAnalyzerTest, CallsInARowRunOneAfterTheOther) {
    WriteWav(m_folder / "x.wav", MakeSilence(1.0));
    CBPMFile& file = File("x.wav");
    CFileAnalyzer analyzer;
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(analyzer.Analyze(&file));
    }
    analyzer.Wait();
    // Never a run's notification between another's.
    std::vector<std::thread::id> order;
    for (CPosted const& posted : m_vPosted) {
        if (order.empty() || order.back() != posted.m_thread) {
            order.push_back(posted.m_thread);
        }
    }
    EXPECT_EQ(Texts(kAnalysisCompleteNotification).size(), 5U);
    EXPECT_LE(order.size(), 5U);
}

TEST_F(FileAnalyzerTest, CancelledRunEndsEarlyAndSaysSo) {
    WriteWav(m_folder / "x.wav", MakeNoise(120.0, 0.5f));
    CFileAnalyzer analyzer;
    m_hook = [&](std::string const& name) {
        if (name == kFileProgressNotification) {
            analyzer.Cancel();
        }
    };
    analyzer.Analyze(&File("x.wav"));
    analyzer.Wait();
    EXPECT_TRUE(analyzer.WasCancelled());
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("0.00"));
    // The pass ended long before its last percent.
    EXPECT_LT(Texts(kFileProgressNotification).size(), 50U);

    m_hook = nullptr;
    WriteWav(m_folder / "y.wav", MakeSilence(10.0));
    analyzer.Analyze(&File("y.wav"));
    analyzer.Wait();
    EXPECT_FALSE(analyzer.WasCancelled());
    EXPECT_EQ(Texts(kFileCompleteNotification).back(), "96.00");
}

TEST_F(FileAnalyzerTest, CancelBeforeTheWorkerBeginsCounts) {
    WriteWav(m_folder / "x.wav", MakeNoise(60.0, 0.5f));
    CFileAnalyzer analyzer;
    analyzer.Analyze(&File("x.wav"));
    analyzer.Cancel();
    analyzer.Wait();
    EXPECT_TRUE(analyzer.WasCancelled());
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("0.00"));
}

TEST_F(FileAnalyzerTest, DestructionCancelsAndWaits) {
    WriteWav(m_folder / "x.wav", MakeNoise(60.0, 0.5f));
    auto analyzer = std::make_unique<CFileAnalyzer>();
    analyzer->Analyze(&File("x.wav"));
    analyzer.reset();
    EXPECT_EQ(Texts(kAnalysisCompleteNotification).size(), 1U);
    EXPECT_EQ(MacThread::getObjectCount(), 0);
}

TEST_F(FileAnalyzerTest, DamageDoesNotKeepTheTempoBack) {
    WriteWav(m_folder / "whole.wav", MakeSilence(12.0));
    Ffmpeg({"-i", m_folder / "whole.wav", "-c:a", "libmp3lame", "-b:a", "128k", "-write_xing", "0",
            "-id3v2_version", "0", m_folder / "whole.mp3"});
    // 383 frames of 1152 samples are 10.005 s; a frame has 417 or 418 bytes.
    WriteText(m_folder / "cut.mp3", ReadText(m_folder / "whole.mp3").substr(0, 160'000));
    CFileAnalyzer analyzer;
    analyzer.Analyze(&File("cut.mp3"));
    analyzer.Wait();
    EXPECT_EQ(analyzer.GetOutcome().m_problem, EAnalysisProblem::None);
    EXPECT_TRUE(analyzer.GetOutcome().m_report.m_bBreaksOff);
    ASSERT_EQ(Texts(kFileCompleteNotification).size(), 1U);
    EXPECT_NEAR(std::stod(Texts(kFileCompleteNotification)[0]), 96.0, 0.2);
}

TEST_F(FileAnalyzerTest, StepsMayBeTakenOneByOne) {
    WriteWav(m_folder / "x.wav", MakeSilence(10.0));
    CBPMFile& file = File("x.wav");
    CFileAnalyzer analyzer;
    analyzer.AnalyzeFile(); // no file yet
    EXPECT_THAT(Texts(kFileCompleteNotification), testing::IsEmpty());
    EXPECT_EQ(Texts(kAnalysisCompleteNotification).size(), 1U);
    analyzer.loadAudioWithFilename(&file);
    analyzer.ProcessFile(&file);
    analyzer.ProcessFile(&file); // the samples are gone
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("96.00", "0.00"));
    EXPECT_EQ(Texts(kAnalysisCompleteNotification).size(), 1U);
}

TEST_F(FileAnalyzerTest, WithoutMemoryForTheEngineThereIsNoTempoAndAReason) {
    WriteWav(m_folder / "x.wav", MakeClickTrack(120.0, 10.0));
    CBPMFile& file = File("x.wav");
    CFileAnalyzer analyzer;
    analyzer.loadAudioWithFilename(&file);
    {
        CFailingAllocation const noMemory;
        analyzer.ProcessFile(&file);
    }
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("0.00"));
    EXPECT_EQ(analyzer.GetOutcome().m_problem, EAnalysisProblem::NoMemory);
}

TEST_F(FileAnalyzerTest, WithoutMemoryInBetweenTheWorkerGoesOnToItsEnd) {
    WriteWav(m_folder / "x.wav", MakeSilence(10.0));
    m_hook = [](std::string const& name) {
        if (name == kFileProgressNotification) {
            throw std::bad_alloc();
        }
    };
    CFileAnalyzer analyzer;
    analyzer.Analyze(&File("x.wav"));
    analyzer.Wait();
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("0.00"));
    EXPECT_EQ(m_vPosted.back().m_sName, kAnalysisCompleteNotification);
    EXPECT_EQ(analyzer.GetOutcome().m_problem, EAnalysisProblem::NoMemory);
}

TEST_F(FileAnalyzerTest, WithoutMemoryForThoseWhoAreToldTheEndIsPostedOnce) {
    WriteWav(m_folder / "x.wav", MakeSilence(10.0));
    m_hook = [](std::string const& name) {
        if (name != kFileProgressNotification) {
            throw std::bad_alloc();
        }
    };
    CFileAnalyzer analyzer;
    analyzer.Analyze(&File("x.wav"));
    analyzer.Wait();
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("96.00"));
    EXPECT_EQ(m_vPosted.back().m_sName, kAnalysisCompleteNotification);
}

TEST_F(FileAnalyzerTest, SeveralAnalyzersRunAtOnce) {
    WriteWav(m_folder / "x.wav", MakeSilence(10.0));
    std::vector<std::unique_ptr<CFileAnalyzer>> analyzers(4);
    for (auto& analyzer : analyzers) {
        analyzer = std::make_unique<CFileAnalyzer>();
        analyzer->Analyze(&File("x.wav"));
    }
    for (auto& analyzer : analyzers) {
        analyzer->Wait();
    }
    EXPECT_THAT(Texts(kFileCompleteNotification), ElementsAre("96.00", "96.00", "96.00", "96.00"));
}

TEST_F(FileAnalyzerTest, TellsFoldersFromFiles) {
    WriteText(m_folder / "file", "x");
    EXPECT_TRUE(IsDirectory(CString::FromPath(m_folder.Path())));
    EXPECT_FALSE(IsDirectory(CString::FromPath(m_folder / "file")));
    EXPECT_FALSE(IsDirectory(CString::FromPath(m_folder / "none")));
}

} // namespace
