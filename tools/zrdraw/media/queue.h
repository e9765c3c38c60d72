// A bounded queue between two threads, which either of them may close with what went wrong.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <mutex>
#include <optional>
#include <utility>

template <class T>
class Queue {
public:
    // Holds things up to this weight, or one that is heavier.
    explicit Queue(std::size_t most) : m_most(most) {}

    // Waits for room, and asks `idle` now and then meanwhile, which may throw. False if the queue
    // is closed: the thing is dropped.
    template <class Idle>
    bool push(T thing, std::size_t weight, Idle idle) {
        std::unique_lock lock(m_mutex);
        await(lock, idle, [&] { return m_closed || m_waiting.empty() || m_weight < m_most; });
        if (m_closed)
            return false;
        m_waiting.push_back({std::move(thing), weight});
        m_weight += weight;
        m_changed.notify_all();
        return true;
    }

    // Waits for a thing; nothing once the queue is closed and empty. What it was closed with is
    // thrown at once, whatever waits.
    template <class Idle>
    std::optional<T> pop(Idle idle) {
        std::unique_lock lock(m_mutex);
        await(lock, idle, [&] { return m_closed || !m_waiting.empty(); });
        if (m_error)
            std::rethrow_exception(m_error);
        if (m_waiting.empty())
            return std::nullopt;
        T thing = std::move(m_waiting.front().thing);
        m_weight -= m_waiting.front().weight;
        m_waiting.pop_front();
        m_changed.notify_all();
        return thing;
    }

    // The first to close it tells why; without an error what waits can still be taken.
    void close(std::exception_ptr error = nullptr) {
        const std::lock_guard lock(m_mutex);
        if (!m_closed)
            m_error = std::move(error);
        m_closed = true;
        m_changed.notify_all();
    }

private:
    template <class Idle, class Ready>
    void await(std::unique_lock<std::mutex>& lock, Idle& idle, Ready ready) {
        constexpr std::chrono::milliseconds interval{50};
        while (!m_changed.wait_for(lock, interval, ready)) {
            lock.unlock();
            idle();
            lock.lock();
        }
    }

    struct Waiting {
        T thing;
        std::size_t weight;
    };

    const std::size_t m_most;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Waiting> m_waiting;
    std::size_t m_weight = 0;
    bool m_closed = false;
    std::exception_ptr m_error;
};
