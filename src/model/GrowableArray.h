#pragma once
// A growable array with the growth rule of the framework arrays the document format was
// designed around: when an append exceeds the capacity, the capacity grows by the grow-by
// value, and a grow-by of 0 means one eighth of the current size, clamped to 4..1024.
// Capacity is observable because removing an element reallocates to the exact size.
// Bulk producers (file readers, importers) that know the final count call Reserve first,
// which keeps loading linear.

#include "base/MemoryAdvice.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace ba {

template <typename T>
class CGrowableArray {
public:
    CGrowableArray() = default;
    explicit CGrowableArray(std::size_t growBy) : m_growBy(growBy) {}

    std::size_t Size() const { return m_items.size(); }
    bool Empty() const { return m_items.empty(); }
    std::size_t Capacity() const { return m_items.capacity(); }

    const T& operator[](std::size_t i) const { return m_items[i]; }
    T& operator[](std::size_t i) { return m_items[i]; }
    const T* Data() const { return m_items.data(); }
    T* Data() { return m_items.data(); }
    std::span<const T> Items() const { return m_items; }
    const T& Back() const { return m_items.back(); }

    void Add(const T& value)
    {
        if (m_items.size() == m_items.capacity()) m_items.reserve(m_items.capacity() + GrowStep());
        m_items.push_back(value);
    }

    // Opens the array at index i (i <= Size()) and writes value there.
    void InsertAt(std::size_t i, const T& value)
    {
        if (m_items.size() == m_items.capacity()) m_items.reserve(m_items.capacity() + GrowStep());
        m_items.insert(m_items.begin() + static_cast<std::ptrdiff_t>(i), value);
    }

    // Removes element i, shifts the tail down and reallocates to exactly the new size.
    void RemoveAt(std::size_t i)
    {
        m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(i));
        FreeExtra();
    }

    // Sets the size; new elements are zeroed (value-initialised).
    void SetSize(std::size_t n)
    {
        if (n > m_items.capacity()) Reserve(std::max(n, m_items.capacity() + GrowStep()));
        m_items.resize(n);
    }

    // A large new block is given the huge-page advice before anything is written to it.
    void Reserve(std::size_t n)
    {
        if (n <= m_items.capacity()) return;
        m_items.reserve(n);
        AdviseHugePages(m_items.data(), m_items.capacity() * sizeof(T));
    }
    void FreeExtra() { std::vector<T>(m_items.begin(), m_items.end()).swap(m_items); }
    void Clear() { std::vector<T>().swap(m_items); }

    void Assign(std::span<const T> values) { m_items.assign(values.begin(), values.end()); }

private:
    std::size_t GrowStep() const
    {
        if (m_growBy != 0) return m_growBy;
        return std::clamp<std::size_t>(m_items.size() / 8, 4, 1024);
    }

    std::vector<T> m_items;
    std::size_t m_growBy = 0;
};

using CFloatArray = CGrowableArray<float>;
using CWordArray = CGrowableArray<unsigned short>;

} // namespace ba
