// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/PictureSource.h"
#include "app/WorkQueue.h"

#include <functional>
#include <memory>
#include <string>

/// Gets one picture at a time on a worker of its own. What is asked for next cancels what was asked
/// for before, so that only the last one ever arrives.
/// Thread: one; `taker` is called on the worker.
class CPictureLoader {
public:
    using Taker = std::function<void(CSongPicturePtr)>;

    /// `source` must outlive it.
    explicit CPictureLoader(IPictureSource& source) : m_source(source) {}
    CPictureLoader(CPictureLoader const&) = delete;
    CPictureLoader& operator=(CPictureLoader const&) = delete;
    ~CPictureLoader() { Cancel(); }

    /// Has `taker` called with the picture of the file at `path`, unless it is cancelled before.
    void Load(std::string path, Taker taker);

    /// What was asked for need not arrive any more; it may be on its way already.
    void Cancel();

private:
    IPictureSource& m_source;
    std::shared_ptr<CCancelFlag> m_pCancel = std::make_shared<CCancelFlag>();
    CWorkQueue m_queue; // comes last: its end waits for the worker
};
