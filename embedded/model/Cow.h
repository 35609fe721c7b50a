// SPDX-FileCopyrightText: 2026 Tematica contributors
// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <utility>

namespace embedded {

/// A value that copies share until one of them writes.
/// std::shared_ptr would do but for its count, whose reading orders nothing: a writer must see that
/// the last reader in another thread is done before it writes in place.
template <typename T> class Cow final {
public:
    Cow()
        : m_node(new Node)
    {
    }
    explicit Cow(T value)
        : m_node(new Node { std::move(value) })
    {
    }
    Cow(const Cow& other)
        : m_node(other.m_node)
    {
        m_node->references.fetch_add(1, std::memory_order_relaxed);
    }
    Cow(Cow&& other) noexcept
        : m_node(std::exchange(other.m_node, nullptr))
    {
    }
    Cow& operator=(Cow other) noexcept
    {
        std::swap(m_node, other.m_node);
        return *this;
    }
    ~Cow() { release(); }

    [[nodiscard]] const T& read() const { return m_node->value; }
    T& write()
    {
        if (m_node->references.load(std::memory_order_acquire) != 1) {
            Node* copy = new Node { m_node->value };
            release();
            m_node = copy;
        }
        return m_node->value;
    }

private:
    struct Node {
        T value {};
        std::atomic<int> references { 1 };
    };
    void release()
    {
        if (m_node && m_node->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete m_node;
    }
    Node* m_node;
};

} // namespace embedded
