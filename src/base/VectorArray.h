// SPDX-FileCopyrightText: 2026 The Tactus authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Growable array of values with the small contracts that the engine relies on.
/// Thread: one thread at a time.
template <typename T>
class CVectorArray {
public:
    /// Appends. Returns: the index of the new element.
    std::int32_t Add(T const& value) {
        m_vItems.push_back(value);
        return static_cast<std::int32_t>(m_vItems.size() - 1);
    }

    /// Appends every element of `other`, in order; `other` may be this array.
    void Append(CVectorArray const& other) {
        std::size_t const count = other.m_vItems.size();
        for (std::size_t i = 0; i < count; ++i) {
            m_vItems.push_back(other.m_vItems[i]);
        }
    }

    /// Inserts before the element at `index`; an index at or past the end appends, and so does a
    /// negative one, which compares as a very large unsigned number.
    void InsertAt(std::int32_t index, T const& value) {
        std::size_t const count = m_vItems.size();
        auto const place = static_cast<std::uint32_t>(index);
        m_vItems.push_back(value);
        if (place < count) {
            std::rotate(m_vItems.begin() + static_cast<std::ptrdiff_t>(place), m_vItems.end() - 1,
                        m_vItems.end());
        }
    }

    /// The first element, null when the array is empty.
    [[nodiscard]] T* GetData() { return m_vItems.empty() ? nullptr : m_vItems.data(); }
    [[nodiscard]] T const* GetData() const { return m_vItems.empty() ? nullptr : m_vItems.data(); }

    [[nodiscard]] std::size_t GetCount() const { return m_vItems.size(); }
    [[nodiscard]] bool IsEmpty() const { return m_vItems.empty(); }
    void RemoveAll() { m_vItems.clear(); }

    /// `index` must be below the count.
    T& operator[](std::size_t index) { return m_vItems[index]; }
    T const& operator[](std::size_t index) const { return m_vItems[index]; }

    auto begin() { return m_vItems.begin(); }
    auto end() { return m_vItems.end(); }
    auto begin() const { return m_vItems.begin(); }
    auto end() const { return m_vItems.end(); }

    bool operator==(CVectorArray const&) const = default;

private:
    std::vector<T> m_vItems;
};
