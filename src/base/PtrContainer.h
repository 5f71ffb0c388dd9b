// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

/// Owning array of object pointers; each object is deleted through its virtual destructor.
/// Thread: one thread at a time.
template <typename T>
class CPtrContainer {
public:
    CPtrContainer() = default;
    CPtrContainer(CPtrContainer const&) = delete;
    CPtrContainer& operator=(CPtrContainer const&) = delete;
    virtual ~CPtrContainer() { DeleteAll(); }

    /// Appends `item`, which may be null and is the container's from now on.
    void Add(std::unique_ptr<T> item) { m_vItems.push_back(std::move(item)); }

    /// True and the element when `index` is below the count; else false, `out` untouched.
    bool EnumItems(std::uint32_t index, T** out) const {
        if (index >= m_vItems.size()) {
            return false;
        }
        *out = m_vItems[index].get();
        return true;
    }

    /// Deletes the elements in order and empties the array.
    void DeleteAll() {
        for (auto& item : m_vItems) {
            item.reset();
        }
        m_vItems.clear();
    }

    [[nodiscard]] std::uint32_t GetCount() const {
        return static_cast<std::uint32_t>(m_vItems.size());
    }

private:
    std::vector<std::unique_ptr<T>> m_vItems;
};
