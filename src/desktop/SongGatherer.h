// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/WorkQueue.h"
#include "base/CancelFlag.h"
#include "export/TakenSong.h"

#include <QObject>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

class CRecordStore;

/// How far the songs are gathered.
struct CGathering {
    enum class EStep { Looking, Idle, Hearing };

    EStep m_step = EStep::Idle;
    std::size_t m_nSongs = 0;   // asked for
    std::size_t m_nMissing = 0; // of these, not heard as a whole before
    std::size_t m_nHeard = 0;   // of the missing ones, with this hearing
    std::size_t m_nInVain = 0;  // of the missing ones, that can't be heard

    bool operator==(CGathering const&) const = default;
};

/// Gathers what was heard of songs before, on a worker of its own, and hears the others once that
/// is asked for. What was heard here is remembered as long as this lives.
/// Thread: main.
class CSongGatherer : public QObject {
    Q_OBJECT

public:
    /// `store` must outlive it.
    explicit CSongGatherer(CRecordStore& store, QObject* parent = nullptr);
    ~CSongGatherer() override;

    /// Looks which of the songs at `paths` are known; a hearing that is on its way ends.
    void look(std::vector<std::string> paths, bool withEnvelopes);

    /// Hears those that are missing.
    void hear();

    /// Ends the hearing; what was heard stays.
    void stop();

    /// What is known of one of these songs. Reads the store.
    [[nodiscard]] std::optional<CTakenSong> song(std::string const& path) const;

    [[nodiscard]] CGathering const& state() const { return m_state; }

signals:
    /// The state is another one.
    void changed();

    /// Sent on the worker, received on the main thread.
    void arrived(std::uint64_t request, CGathering const& state);

private:
    struct CTask; // what the worker is given

    void begin(std::shared_ptr<CTask> task);
    void lookUp(CTask& task);
    void hearMissing(CTask& task);
    [[nodiscard]] std::optional<CTakenSong> remembered(std::string const& path,
                                                       bool withEnvelopes) const;

    CRecordStore& m_store;
    std::vector<std::string> m_vPaths;
    bool m_bEnvelopes = false;
    CGathering m_state;
    std::uint64_t m_nRequest = 0; // the latest
    std::shared_ptr<CTask> m_pTask;

    mutable std::mutex m_lock; // Guards the songs.
    std::map<std::string, CTakenSong> m_vSongs;

    CWorkQueue m_queue; // comes last: its end waits for the worker
};
