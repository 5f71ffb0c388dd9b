// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

// The steps: open the file and find its best audio stream; count what its packets come to; begin
// anew and decode them one by one as samples are asked for; at the end compare the counts, and look
// whether the file is still the same. Where packets come to nothing, a first decode counts instead.

#include "platform/AudioStream.h"

#include "platform/DecodeRun.h"
#include "platform/DecodeWatch.h"
#include "platform/DecodedAudio.h"
#include "platform/LastMessage.h"
#include "platform/SampleQueue.h"
#include "platform/SourceFile.h"

#include <algorithm>
#include <new>
#include <utility>

/// The open file and the run over it. Problems returned end the stream.
class CAudioStream::CSource {
public:
    CSource(std::string path, CCancelFlag const* cancel, std::chrono::milliseconds patience)
        : m_sPath(std::move(path)), m_watch(cancel, patience) {}

    EDecodeProblem Open();
    template <typename T>
    EDecodeProblem Read(std::span<T> samples);
    EDecodeProblem Finish();
    EDecodeProblem Restart();

    [[nodiscard]] bool IsMiscounted() const { return m_bMiscounted; }
    [[nodiscard]] std::int32_t GetCount() const { return m_nCount; }

    void Tell(EDecodeProblem problem, CDecodeReport& report);

private:
    EDecodeProblem StartRun();
    EDecodeProblem CountByDecoding();
    EDecodeProblem Begin();
    EDecodeProblem Step();

    std::string m_sPath;
    CSourceFile m_file;
    CDecodeWatch m_watch;
    CSampleQueue m_queue;
    std::unique_ptr<CDecodeRun> m_pRun;
    std::optional<std::int64_t> m_nTrackLength;
    CSongLength m_length;
    std::int32_t m_nCount = 0;  // samples, by the length
    std::int64_t m_nGiven = 0;  // samples
    bool m_bDecoded = false;    // the length is that of a decode
    bool m_bMiscounted = false; // it is another than that of the decode before
};

EDecodeProblem CAudioStream::CSource::StartRun() {
    m_queue.Clear();
    m_nGiven = 0;
    m_pRun = std::make_unique<CDecodeRun>(m_sPath, m_file, m_watch, m_queue);
    m_pRun->SetTrackLength(m_nTrackLength);
    return m_pRun->Open();
}

EDecodeProblem CAudioStream::CSource::Open() {
    EDecodeProblem problem = m_file.Open(m_sPath);
    problem = problem == EDecodeProblem::None ? StartRun() : problem;
    if (problem != EDecodeProblem::None) {
        return problem;
    }
    m_length = m_pRun->Estimate();
    m_nTrackLength = m_pRun->GetTrackLength();
    if (m_length.m_nFrames <= 0 || !SampleCountOf(m_length.m_nFrames)) {
        problem = CountByDecoding();
    } else if (m_pRun->IsUsedUp()) {
        problem = StartRun();
    }
    return problem == EDecodeProblem::None ? Begin() : problem;
}

EDecodeProblem CAudioStream::CSource::CountByDecoding() {
    EDecodeProblem problem = StartRun();
    while (problem == EDecodeProblem::None && !m_pRun->HasEnded()) {
        problem = m_pRun->Step();
    }
    if (problem != EDecodeProblem::None) {
        return problem;
    }
    m_length = m_pRun->GetLength();
    m_bDecoded = true;
    return m_length.m_nFrames > 0 ? StartRun() : EDecodeProblem::NoAudio;
}

/// Takes the length for granted and makes the run, which is open, ready for its samples.
EDecodeProblem CAudioStream::CSource::Begin() {
    std::optional<std::int32_t> const count = SampleCountOf(m_length.m_nFrames);
    if (m_length.m_nFrames <= 0 || !count) {
        return count ? EDecodeProblem::NoAudio : EDecodeProblem::TooLong;
    }
    m_nCount = *count;
    m_pRun->SetWanted(m_nCount);
    m_watch.NoteYield();
    return EDecodeProblem::None;
}

/// Decodes the next packet. Behind the last one the length is compared.
EDecodeProblem CAudioStream::CSource::Step() {
    EDecodeProblem const problem = m_pRun->Step();
    if (problem != EDecodeProblem::None || !m_pRun->HasEnded()) {
        return problem;
    }
    CSongLength const length = m_pRun->GetLength();
    m_nTrackLength = m_pRun->GetTrackLength();
    m_bMiscounted = length != m_length;
    // Twice the same bytes give twice the same length.
    bool const isOther = m_bMiscounted && m_bDecoded;
    m_length = length;
    m_bDecoded = true;
    return isOther ? EDecodeProblem::Changed : EDecodeProblem::None;
}

template <typename T>
EDecodeProblem CAudioStream::CSource::Read(std::span<T> samples) {
    std::int64_t const end = std::min<std::int64_t>(m_nCount, m_length.m_nMusicEnd);
    while (!samples.empty() && m_nGiven < end) {
        auto const left = static_cast<std::size_t>(end - m_nGiven);
        std::size_t const taken = m_queue.Take(samples.first(std::min(samples.size(), left)));
        samples = samples.subspan(taken);
        m_nGiven += static_cast<std::int64_t>(taken);
        if (taken > 0) {
            continue;
        }
        if (m_pRun->HasEnded()) {
            break;
        }
        EDecodeProblem const problem = Step();
        if (problem != EDecodeProblem::None || m_bMiscounted) {
            return problem;
        }
    }
    std::ranges::fill(samples, T{0});
    m_nGiven += static_cast<std::int64_t>(samples.size());
    return EDecodeProblem::None;
}

EDecodeProblem CAudioStream::CSource::Finish() {
    EDecodeProblem problem = EDecodeProblem::None;
    while (problem == EDecodeProblem::None && !m_pRun->HasEnded()) {
        problem = Step();
        m_queue.Drop();
    }
    return problem;
}

EDecodeProblem CAudioStream::CSource::Restart() {
    m_bMiscounted = false;
    EDecodeProblem const problem = StartRun();
    return problem == EDecodeProblem::None ? Begin() : problem;
}

/// Enters what is known of the file, and `problem` or a better reason for it.
void CAudioStream::CSource::Tell(EDecodeProblem problem, CDecodeReport& report) {
    if (m_pRun != nullptr) {
        m_pRun->Tell(report);
    }
    bool const isOpen = m_file.GetIdentity() != CFileIdentity();
    // Of free format the library finds nothing, or by chance what looks like frames.
    bool const isOver =
        m_pRun != nullptr && (m_pRun->HasEnded() || problem != EDecodeProblem::None);
    bool const isHeard = m_length.m_nFrames > 0 && 2 * report.m_nBadPackets <= report.m_nPackets;
    bool const isForNoAudio = problem == EDecodeProblem::NoAudio || problem == EDecodeProblem::None;
    if (isOver && !isHeard && isForNoAudio && report.m_container == EContainer::MpegAudio &&
        IsFreeFormat(m_file)) {
        problem = EDecodeProblem::FreeFormat;
    }
    report.m_problem = isOpen ? m_watch.Explain(m_file.Explain(problem)) : problem;
    report.m_identity = m_file.GetIdentity();
    report.m_nError = report.m_problem == EDecodeProblem::SystemError ? m_file.GetError() : 0;
}

CAudioStream::CAudioStream(CCancelFlag const* cancel) : m_pCancel(cancel) {
}

CAudioStream::~CAudioStream() = default;
CAudioStream::CAudioStream(CAudioStream&& other) noexcept = default;
CAudioStream& CAudioStream::operator=(CAudioStream&& other) noexcept = default;

/// Does one piece of work on the source and enters what came of it into the report, but for blocks
/// in between, when there is nothing new to tell.
template <typename Work>
CStatus CAudioStream::Do(EWork kind, Work work) {
    if (m_pSource == nullptr && kind != EWork::Open) {
        return kStatusFailure;
    }
    EDecodeProblem problem = EDecodeProblem::None;
    try {
        problem = work();
        bool const isOver = problem != EDecodeProblem::None || m_pSource->IsMiscounted();
        if (!isOver && kind == EWork::Block) {
            return kStatusOk;
        }
        m_pSource->Tell(problem, m_report);
    } catch (std::bad_alloc const&) {
        m_report.m_problem = EDecodeProblem::NoMemory;
    }
    if (std::string said = LastMessage(); !said.empty()) {
        m_report.m_sDetail = std::move(said);
    }
    switch (m_report.m_problem) {
    case EDecodeProblem::None:
        return MustRestart() ? kStatusFailure : kStatusOk;
    case EDecodeProblem::Cancelled:
        return kStatusNothing;
    default:
        return kStatusFailure;
    }
}

CStatus CAudioStream::Open(std::string const& path) {
    ForgetMessage();
    m_report = {};
    return Do(EWork::Open, [&] {
        m_pSource = std::make_unique<CSource>(path, m_pCancel, m_patience);
        return m_pSource->Open();
    });
}

std::int32_t CAudioStream::GetCount() const {
    return m_pSource != nullptr ? m_pSource->GetCount() : 0;
}

CStatus CAudioStream::Read(std::span<float> samples) {
    return Do(EWork::Block, [&] { return m_pSource->Read(samples); });
}

CStatus CAudioStream::Read(std::span<std::int16_t> samples) {
    return Do(EWork::Block, [&] { return m_pSource->Read(samples); });
}

CStatus CAudioStream::Finish() {
    return Do(EWork::Step, [&] { return m_pSource->Finish(); });
}

bool CAudioStream::MustRestart() const {
    return m_report.m_problem == EDecodeProblem::None && m_pSource != nullptr &&
           m_pSource->IsMiscounted();
}

CStatus CAudioStream::Restart() {
    return Do(EWork::Step, [&] { return m_pSource->Restart(); });
}
