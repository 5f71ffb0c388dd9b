// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

/// Base of every reference-counted object. The count starts at 1.
/// Thread: the count is safe from any thread.
class CSmartPtrTarget {
public:
    CSmartPtrTarget() = default;
    CSmartPtrTarget(CSmartPtrTarget const&) = delete;
    CSmartPtrTarget& operator=(CSmartPtrTarget const&) = delete;

    /// Returns: the new count.
    std::int32_t AddRef() noexcept { return m_nRefCount.fetch_add(1) + 1; }

    /// Deletes the object when the count comes to 0.
    /// Returns: the new count.
    std::int32_t Release() {
        std::int32_t const count = m_nRefCount.fetch_sub(1) - 1;
        if (count == 0) {
            delete this;
        }
        return count;
    }

protected:
    virtual ~CSmartPtrTarget() = default;

private:
    std::atomic<std::int32_t> m_nRefCount{1};
};

/// Shared owner of a `CSmartPtrTarget`: a copy holds a further reference.
/// Thread: one thread at a time for each pointer; the target may be shared.
template <typename T>
class CSmartPtr {
public:
    CSmartPtr() = default;
    CSmartPtr(CSmartPtr const& other) : m_pTarget(other.m_pTarget) {
        if (m_pTarget != nullptr) {
            m_pTarget->AddRef();
        }
    }
    CSmartPtr(CSmartPtr&& other) noexcept : m_pTarget(std::exchange(other.m_pTarget, nullptr)) {}
    CSmartPtr& operator=(CSmartPtr other) noexcept {
        std::swap(m_pTarget, other.m_pTarget);
        return *this;
    }
    ~CSmartPtr() { Clear(); }

    /// Holds a new default-constructed target. The old one is let go first; should construction
    /// throw, the pointer stays null.
    void Create() {
        Clear();
        m_pTarget = new T;
    }

    /// Lets the target go.
    void Clear() {
        if (T* const old = std::exchange(m_pTarget, nullptr); old != nullptr) {
            old->Release();
        }
    }

    /// The target. Throws the int 0 when there is none.
    T* operator->() const {
        if (m_pTarget == nullptr) {
            throw 0;
        }
        return m_pTarget;
    }

    /// The target, null when there is none; the pointer keeps its reference.
    [[nodiscard]] T* Get() const { return m_pTarget; }

    explicit operator bool() const { return m_pTarget != nullptr; }

private:
    T* m_pTarget = nullptr;
};
