// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT
//
// The part of the window that needs Qt's multimedia library. The window loads it when it runs.

#include "desktop/SoundOutput.h"

#include <QAudioDevice>
#include <QAudioFormat>
#include <QAudioSink>
#include <QIODevice>
#include <QMediaDevices>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>
#include <vector>

namespace {

constexpr int kBufferDivisor = 5;      // Fixed: a fifth of a second is held ready.
constexpr float kFullScale = 32767.0f; // Standard: the largest number of 16 bits.
constexpr qint64 kMicroseconds = 1'000'000;
constexpr qint64 kFrameBytes = 2 * sizeof(std::int16_t);

/// Renders what the sink asks for, as 16-bit samples.
class CFeed : public QIODevice {
public:
    explicit CFeed(ISoundOutput::Render render) : m_render(std::move(render)) {
        (void)open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] bool hasEnded() const { return m_bEnded; }
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_bEnded ? 0 : kFrameBytes * kMicroseconds; }

protected:
    qint64 readData(char* data, qint64 size) override {
        auto const frames = static_cast<std::size_t>(std::max<qint64>(size / kFrameBytes, 0));
        m_vFloats.resize(2 * frames);
        std::size_t const done = m_bEnded ? 0 : m_render(m_vFloats);
        m_bEnded = m_bEnded || done < frames;
        m_vShorts.resize(2 * done);
        std::transform(m_vFloats.begin(), m_vFloats.begin() + static_cast<std::ptrdiff_t>(2 * done),
                       m_vShorts.begin(), [](float sample) {
                           return static_cast<std::int16_t>(
                               std::lround(std::clamp(sample, -1.0f, 1.0f) * kFullScale));
                       });
        std::memcpy(data, m_vShorts.data(), m_vShorts.size() * sizeof(std::int16_t));
        return static_cast<qint64>(done) * kFrameBytes;
    }
    qint64 writeData(char const*, qint64) override { return -1; }

private:
    ISoundOutput::Render m_render;
    std::vector<float> m_vFloats;
    std::vector<std::int16_t> m_vShorts;
    bool m_bEnded = false;
};

class CQtSound final : public ISoundOutput {
public:
    CQtSound() : m_device(QMediaDevices::defaultAudioOutput()) {
        m_format.setSampleRate(m_device.preferredFormat().sampleRate());
        m_format.setChannelCount(2);
        m_format.setSampleFormat(QAudioFormat::Int16);
    }

    int rate() const override { return m_device.isNull() ? 0 : m_format.sampleRate(); }

    bool start(Render render) override {
        stop();
        m_pFeed = std::make_unique<CFeed>(std::move(render));
        m_pSink = std::make_unique<QAudioSink>(m_device, m_format);
        m_pSink->setBufferSize(m_format.bytesForDuration(kMicroseconds / kBufferDivisor));
        m_pSink->start(m_pFeed.get());
        return m_pSink->error() == QAudio::NoError;
    }

    void stop() override {
        if (m_pSink != nullptr) {
            m_pSink->reset(); // what is held ready is dropped
            m_pSink.reset();
            m_pFeed.reset();
        }
    }

    std::int64_t heardFrames() const override {
        if (m_pSink == nullptr) {
            return 0;
        }
        qint64 const taken = m_pSink->processedUSecs() * m_format.sampleRate() / kMicroseconds;
        qint64 const held = (m_pSink->bufferSize() - m_pSink->bytesFree()) / kFrameBytes;
        return std::max<qint64>(taken - std::max<qint64>(held, 0), 0);
    }

    bool hasEnded() const override {
        return m_pFeed != nullptr && m_pFeed->hasEnded() && m_pSink->state() != QAudio::ActiveState;
    }

private:
    QAudioDevice m_device;
    QAudioFormat m_format;
    std::unique_ptr<CFeed> m_pFeed; // outlives the sink that reads it
    std::unique_ptr<QAudioSink> m_pSink;
};

} // namespace

/// Null for a window of another version.
extern "C" Q_DECL_EXPORT ISoundOutput* TactusMakeSoundOutput(char const* version) {
    return std::strcmp(version, TACTUS_VERSION) == 0 ? new CQtSound : nullptr;
}
