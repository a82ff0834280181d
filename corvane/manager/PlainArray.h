// A growing array of plain values.
#pragma once

#include <corvane/manager/MemoryPool.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace corvane {

/// Up to 4 G values of a trivially copyable type, in memory of its own or, if it was copied into a pool, in
/// that pool's, which has to outlive it. What then needs more room moves to memory of its own. An operation
/// that throws, for lack of memory or of numbers (std::length_error), has changed nothing. Not for use by two
/// threads at once.
template <class T>
class PlainArray {
    static_assert(std::is_trivially_copyable_v<T> && alignof(T) <= 8);

public:
    PlainArray() = default;
    PlainArray(const PlainArray& other) {
        Reserve(other.m_size);
        Append(other.begin(), other.m_size);
    }
    PlainArray(const PlainArray& other, MemoryPool& pool) {
        m_values = static_cast<T*>(pool.Take(other.m_size * sizeof(T)));
        Append(other.begin(), other.m_size);
    }
    PlainArray(PlainArray&& other) noexcept { Swap(other); }
    PlainArray& operator=(const PlainArray&) = delete;
    PlainArray& operator=(PlainArray&& other) noexcept {
        PlainArray moved(std::move(other));
        Swap(moved);
        return *this;
    }
    ~PlainArray() {
        if (m_room > 0)
            ::operator delete(m_values);
    }

    std::size_t Size() const noexcept { return m_size; }
    bool Empty() const noexcept { return m_size == 0; }
    /// How many values have a place; 0 for an array in a pool.
    std::size_t Room() const noexcept { return m_room; }

    T& operator[](std::size_t index) noexcept { return m_values[index]; }
    const T& operator[](std::size_t index) const noexcept { return m_values[index]; }
    T* begin() noexcept { return m_values; }
    T* end() noexcept { return m_values + m_size; }
    const T* begin() const noexcept { return m_values; }
    const T* end() const noexcept { return m_values + m_size; }

    void Reserve(std::size_t room) {
        if (room <= std::max(m_room, m_size)) // in a pool there is a place for what there is
            return;
        if (room > std::numeric_limits<std::uint32_t>::max())
            throw std::length_error("too many values");
        PlainArray larger;
        larger.m_values = static_cast<T*>(::operator new(room * sizeof(T)));
        larger.m_room = static_cast<std::uint32_t>(room);
        larger.Append(begin(), m_size);
        Swap(larger);
    }

    /// Adds values for which there is a place.
    void Append(const T* values, std::size_t count) noexcept {
        if (count > 0)
            std::memcpy(m_values + m_size, values, count * sizeof(T));
        m_size += static_cast<std::uint32_t>(count);
    }

    /// Makes it so many equal values, for which there is a place.
    void Fill(std::size_t count, T value) noexcept {
        m_size = static_cast<std::uint32_t>(count);
        std::fill(begin(), end(), value);
    }

    void Clear() noexcept { m_size = 0; }

    void Swap(PlainArray& other) noexcept {
        std::swap(m_values, other.m_values);
        std::swap(m_size, other.m_size);
        std::swap(m_room, other.m_room);
    }

private:
    T* m_values = nullptr;
    std::uint32_t m_size = 0;
    std::uint32_t m_room = 0;
};

} // namespace corvane
