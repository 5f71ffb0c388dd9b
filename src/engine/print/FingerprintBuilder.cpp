// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// Each push: Append (the sliding window), ScanForPrint (capture), FindMatchingPrints (search).
//
// The window is a stretch of 16384 values that moves forward through a room of twice the size; only
// when it touches the room's end are its values copied back to the start.

#include "engine/print/Fingerprint.h"

#include "base/TimeUtil.h"
#include "engine/envelope/PcmThumbnail.h"

#include <algorithm>

namespace {

constexpr std::uint32_t kCapacity = 16384;        // Fixed: values in the window.
constexpr std::uint32_t kRoom = 2 * kCapacity;    // Tuned: BM_FingerprintPush.
constexpr std::uint32_t kPrintSamples = 512;      // Fixed: stretch of one excerpt.
constexpr std::uint32_t kSamplesPerValue = 4;     // Fixed: as in a print.
constexpr std::uint32_t kLargePrintValues = 4096; // Fixed: longest large print.
constexpr std::int64_t kReach = 2048;             // Fixed: search distance either way, in samples.
constexpr std::int64_t kLastTime = 30'000'000;    // Fixed: 30 s in microseconds.
constexpr std::int64_t kLastSilentTime = 999'999; // Fixed: captures begin after 1 s.
constexpr float kEnoughRange = 1.0f; // Fixed: range of an excerpt that ends the search.
constexpr std::int64_t kMicrosecondsPerSecond = 1'000'000;

} // namespace

CPfFingerprintBuilder::CPfFingerprintBuilder(CFingerprint* capture, CFingerprint* reference,
                                             std::int64_t* offset)
    : m_pCapture(capture), m_pReference(reference), m_pOffset(offset) {
    m_pRoom = static_cast<float*>(static_cast<void*>(m_windowMem.AllocMem(kRoom * sizeof(float))));
    m_pWindow = m_pRoom;
}

std::int64_t CPfFingerprintBuilder::TimeOf(std::int64_t pos) const {
    return SamplePosToTime(pos, m_nSampleRate);
}

CStatus CPfFingerprintBuilder::PushPcm(float const* data, std::uint32_t n) {
    if (m_pRoom == nullptr) {
        return kStatusFailure;
    }
    if (TimeOf(m_nFirstPos) > kLastTime) {
        return kStatusNothing;
    }
    Append(data, n);
    ScanForPrint();
    FindMatchingPrints();
    return kStatusOk;
}

void CPfFingerprintBuilder::Append(float const* data, std::uint32_t n) {
    std::int64_t const overflow = std::int64_t{m_nCount} + n - kCapacity;
    if (overflow > 0) {
        // Deliberate: of a push that is larger than the window the first values stay, not the
        // newest, while the position moves on by the whole overflow.
        DropOldest(static_cast<std::uint32_t>(std::min<std::int64_t>(overflow, m_nCount)));
        m_nFirstPos += overflow;
    }
    std::uint32_t const taken = std::min(n, kCapacity - m_nCount);
    if (m_pWindow + m_nCount + taken > m_pRoom + kRoom) {
        std::copy_n(m_pWindow, m_nCount, m_pRoom);
        m_pWindow = m_pRoom;
    }
    std::copy_n(data, taken, m_pWindow + m_nCount);
    m_nCount += taken;
}

void CPfFingerprintBuilder::DropOldest(std::uint32_t count) {
    m_pWindow += count;
    m_nCount -= count;
}

void CPfFingerprintBuilder::ScanForPrint() {
    if (m_pCapture == nullptr || m_bCaptured || TimeOf(m_nFirstPos) <= kLastSilentTime ||
        m_nCount < kPrintSamples) {
        return;
    }
    float min = 0.0f;
    float max = 0.0f;
    for (std::uint32_t i = 0; i < kPrintSamples; i += kSamplesPerValue) {
        min = std::min(min, m_pWindow[i]);
        max = std::max(max, m_pWindow[i]);
    }
    if (m_pCapture->IsPrintSmaller(min, max)) {
        m_pCapture->CapturePrint(m_pWindow, kPrintSamples, TimeOf(m_nFirstPos), min, max);
        m_bCaptured = max - min > kEnoughRange;
    }
}

void CPfFingerprintBuilder::FindMatchingPrints() {
    if (m_pReference == nullptr || m_pOffset == nullptr || m_nSampleRate == 0) {
        return;
    }
    std::int64_t const low = m_nFirstPos < kReach ? 0 : m_nFirstPos + kReach;
    std::int64_t const from = std::max(TimeOf(low), m_nNextSearch);
    std::int64_t const to = TimeOf(m_nFirstPos + m_nCount - (kReach + kPrintSamples + 1));
    std::int64_t const recordedTime = m_pReference->GetTime();
    if (recordedTime < from || recordedTime > to) {
        return;
    }
    m_pReference->AddRef();
    SearchWindow(TimeToSamplePos(recordedTime, m_nSampleRate) - m_nFirstPos);
    m_pReference->Release();
    m_nNextSearch = to + 1;
}

void CPfFingerprintBuilder::SearchWindow(std::int64_t recorded) {
    std::int64_t const start = std::max<std::int64_t>(recorded - kReach, 0);
    std::int64_t const end = m_nCount < recorded + kReach + kPrintSamples
                                 ? std::int64_t{m_nCount} - kPrintSamples
                                 : recorded + kReach;
    std::int32_t found = 0;
    if (start < end &&
        m_pReference->DoesPrintMatch(m_pWindow, m_nCount, static_cast<std::int32_t>(start),
                                     static_cast<std::int32_t>(end), &found)) {
        *m_pOffset = (found - recorded) * kMicrosecondsPerSecond / m_nSampleRate;
    }
}

void CPfFingerprintBuilder::BuildLargePrint(CPfPcmThumbnail* thumb, CFingerprint* print) {
    float* values = nullptr;
    std::uint32_t count = 0;
    if (print != nullptr && thumb->GetData(&values, &count)) {
        print->CaptureRawPrint(values, std::min(count, kLargePrintValues));
    }
}
