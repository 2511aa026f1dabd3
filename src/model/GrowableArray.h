#pragma once
// A growable array with the growth rule of the framework arrays the document format was
// designed around: when an append exceeds the capacity, the capacity grows by the grow-by
// value, and a grow-by of 0 means one eighth of the current size, clamped to 4..1024.
// Capacity is observable because removing an element reallocates to the exact size.
// Bulk producers (file readers, importers) that know the final count call Reserve first,
// which keeps loading linear.

#include "base/MemoryAdvice.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

namespace ba {

// Leaves an element made without arguments uninitialised, so that a producer that writes
// every element itself (possibly from several threads) does not pay for zeroing first.
template <typename T>
struct DefaultInitAllocator : std::allocator<T> {
    template <typename U>
    struct rebind {
        using other = DefaultInitAllocator<U>;
    };
    using std::allocator<T>::allocator;

    template <typename U, typename... Args>
    void construct(U* p, Args&&... args)
    {
        if constexpr (sizeof...(Args) == 0) ::new (static_cast<void*>(p)) U;
        else ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
    }
};

template <typename T>
class CGrowableArray {
public:
    CGrowableArray() = default;
    explicit CGrowableArray(std::size_t growBy) : m_growBy(growBy) {}

    std::size_t Size() const { return View().size(); }
    bool Empty() const { return View().empty(); }
    std::size_t Capacity() const { return View().capacity(); }

    const T& operator[](std::size_t i) const { return View()[i]; }
    T& operator[](std::size_t i) { return Own()[i]; }
    const T* Data() const { return View().data(); }
    T* Data() { return Own().data(); }
    std::span<const T> Items() const { return View(); }
    const T& Back() const { return View().back(); }

    // Whether this array and `other` read the same storage, so hold the same elements.
    bool SharesStorageWith(const CGrowableArray& other) const { return m_items && m_items == other.m_items; }

    void Add(const T& value)
    {
        Storage& items = Own();
        if (items.size() == items.capacity()) items.reserve(items.capacity() + GrowStep());
        items.push_back(value);
    }

    // Opens the array at index i (i <= Size()) and writes value there.
    void InsertAt(std::size_t i, const T& value)
    {
        Storage& items = Own();
        if (items.size() == items.capacity()) items.reserve(items.capacity() + GrowStep());
        items.insert(items.begin() + static_cast<std::ptrdiff_t>(i), value);
    }

    // Removes element i, shifts the tail down and reallocates to exactly the new size.
    void RemoveAt(std::size_t i)
    {
        Storage& items = Own();
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(i));
        FreeExtra();
    }

    // Sets the size; new elements are zeroed (value-initialised).
    void SetSize(std::size_t n)
    {
        if (n > Capacity()) Reserve(std::max(n, Capacity() + GrowStep()));
        Own().resize(n, T{});
    }

    // Sets the size, leaving new elements for the caller to write before anything reads them.
    void SetSizeForOverwrite(std::size_t n)
    {
        if (n > Capacity()) Reserve(std::max(n, Capacity() + GrowStep()));
        Own().resize(n);
    }

    // A large new block is given the huge-page advice before anything is written to it.
    void Reserve(std::size_t n)
    {
        if (n <= Capacity()) return;
        Storage& items = Own();
        items.reserve(n);
        AdviseHugePages(items.data(), items.capacity() * sizeof(T));
    }
    void FreeExtra() { m_items = std::make_shared<Storage>(View().begin(), View().end()); }
    void Clear() { m_items.reset(); }

    // Replaces the elements, into the storage already reserved when it is this array's own.
    void Assign(std::span<const T> values)
    {
        if (m_items && m_items.use_count() == 1) m_items->assign(values.begin(), values.end());
        else m_items = std::make_shared<Storage>(values.begin(), values.end());
    }

private:
    using Storage = std::vector<T, DefaultInitAllocator<T>>;

    // Copies of an array share its storage until one of them is changed: a trace derived
    // from another (a formula log, a filtered curve) keeps the same depths without a copy,
    // and so does a trace kept for undo. Every change goes through Own, which first gives
    // this array storage of its own when it shares. As with any change, an array must not
    // be changed while another thread reads it.
    const Storage& View() const
    {
        static const Storage empty;
        return m_items ? *m_items : empty;
    }
    Storage& Own()
    {
        if (!m_items || m_items.use_count() != 1) [[unlikely]] {
            TakeOwnCopy();
        } else {
            // Pairs with the release of a copy on another thread, whose reads then come
            // before the changes made here.
            std::atomic_thread_fence(std::memory_order_acquire);
        }
        return *m_items;
    }
    // The copy has the capacity a copied std::vector has: its size.
    void TakeOwnCopy()
    {
        m_items = m_items ? std::make_shared<Storage>(m_items->begin(), m_items->end()) : std::make_shared<Storage>();
    }

    std::size_t GrowStep() const
    {
        if (m_growBy != 0) return m_growBy;
        return std::clamp<std::size_t>(Size() / 8, 4, 1024);
    }

    std::shared_ptr<Storage> m_items;
    std::size_t m_growBy = 0;
};

using CFloatArray = CGrowableArray<float>;
using CWordArray = CGrowableArray<unsigned short>;

} // namespace ba
