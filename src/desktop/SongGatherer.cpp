// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#include "desktop/SongGatherer.h"

#include "app/SongRecall.h"
#include "records/RecordStore.h"

#include <utility>

/// The worker's own, but for the flag.
struct CSongGatherer::CTask {
    std::uint64_t m_nRequest = 0;
    std::vector<std::string> m_vPaths;
    bool m_bEnvelopes = false;
    std::vector<std::string> m_vMissing; // once it was looked
    CGathering m_state;
    CCancelFlag m_cancel;
};

CSongGatherer::CSongGatherer(CRecordStore& store, QObject* parent)
    : QObject(parent), m_store(store) {
    connect(
        this, &CSongGatherer::arrived, this,
        [this](std::uint64_t request, CGathering const& state) {
            if (request == m_nRequest) {
                m_state = state;
                emit changed();
            }
        },
        Qt::QueuedConnection);
}

CSongGatherer::~CSongGatherer() {
    if (m_pTask != nullptr) {
        m_pTask->m_cancel.Set();
    }
}

void CSongGatherer::begin(std::shared_ptr<CTask> task) {
    if (m_pTask != nullptr) {
        m_pTask->m_cancel.Set();
    }
    m_pTask = std::move(task);
    m_pTask->m_nRequest = ++m_nRequest;
    m_pTask->m_state = m_state;
}

void CSongGatherer::look(std::vector<std::string> paths, bool withEnvelopes) {
    m_vPaths = std::move(paths);
    m_bEnvelopes = withEnvelopes;
    m_state = {.m_step = CGathering::EStep::Looking, .m_nSongs = m_vPaths.size()};
    auto const task = std::make_shared<CTask>();
    task->m_vPaths = m_vPaths;
    task->m_bEnvelopes = withEnvelopes;
    begin(task);
    if (!m_queue.Post([this, task] { lookUp(*task); })) {
        m_state.m_step = CGathering::EStep::Idle; // without a thread nothing is known
        m_state.m_nMissing = m_state.m_nSongs;
    }
    emit changed();
}

void CSongGatherer::hear() {
    m_state.m_step = CGathering::EStep::Hearing;
    m_state.m_nHeard = 0;
    m_state.m_nInVain = 0;
    auto const task = std::make_shared<CTask>();
    task->m_vPaths = m_vPaths;
    task->m_bEnvelopes = m_bEnvelopes;
    begin(task);
    bool const isBegun = m_queue.Post([this, task] {
        lookUp(*task);
        hearMissing(*task);
    });
    if (!isBegun) {
        m_state.m_step = CGathering::EStep::Idle;
    }
    emit changed();
}

void CSongGatherer::stop() {
    if (m_state.m_step == CGathering::EStep::Hearing) {
        look(m_vPaths, m_bEnvelopes);
    }
}

void CSongGatherer::lookUp(CTask& task) {
    for (std::string const& path : task.m_vPaths) {
        if (task.m_cancel.IsSet()) {
            return;
        }
        bool const isKnown = remembered(path, task.m_bEnvelopes) ||
                             RecallSong(m_store, path, task.m_bEnvelopes).has_value();
        if (!isKnown) {
            task.m_vMissing.push_back(path);
        }
    }
    task.m_state.m_nMissing = task.m_vMissing.size();
    if (task.m_state.m_step == CGathering::EStep::Looking) {
        task.m_state.m_step = CGathering::EStep::Idle;
        emit arrived(task.m_nRequest, task.m_state);
    }
}

void CSongGatherer::hearMissing(CTask& task) {
    for (std::string const& path : task.m_vMissing) {
        emit arrived(task.m_nRequest, task.m_state);
        std::optional<CTakenSong> heard = HearSong(m_store, path, task.m_bEnvelopes, task.m_cancel);
        if (task.m_cancel.IsSet()) {
            return;
        }
        if (heard) {
            std::scoped_lock const guard(m_lock);
            m_vSongs.insert_or_assign(path, *std::move(heard));
            ++task.m_state.m_nHeard;
        } else {
            ++task.m_state.m_nInVain;
        }
    }
    task.m_state.m_nMissing -= task.m_state.m_nHeard;
    task.m_state.m_step = CGathering::EStep::Idle;
    emit arrived(task.m_nRequest, task.m_state);
}

std::optional<CTakenSong> CSongGatherer::remembered(std::string const& path,
                                                    bool withEnvelopes) const {
    std::scoped_lock const guard(m_lock);
    auto const found = m_vSongs.find(path);
    bool const isEnough =
        found != m_vSongs.end() && (!withEnvelopes || !found->second.m_energy.m_vLevels.empty());
    return isEnough ? std::optional(found->second) : std::nullopt;
}

std::optional<CTakenSong> CSongGatherer::song(std::string const& path) const {
    std::optional<CTakenSong> song = remembered(path, m_bEnvelopes);
    return song ? std::move(song) : RecallSong(m_store, path, m_bEnvelopes);
}
