#include "media/road.h"

#include "interrupt.h"

#include <chrono>
#include <csignal>

#include <pthread.h>

namespace {

// In frames: packets weigh nothing to speak of, and must not fill the queue.
constexpr std::size_t mostWeight = 96;
constexpr std::size_t frameWeight = 32;
constexpr std::size_t packetWeight = 1;

std::size_t weightOf(const Item& item) {
    return std::holds_alternative<std::unique_ptr<Frame>>(item) ? frameWeight : packetWeight;
}

void wait() {}

struct Abandoned {};

// Ignored by default, and so harmless to those who do not wait.
constexpr int wakeSignal = SIGURG;

// Without SA_RESTART, so that the call it meets ends.
void installWakeSignal() {
    struct sigaction action {};
    action.sa_handler = [](int) {};
    sigaction(wakeSignal, &action, nullptr);
}

} // namespace

Worker::Worker(std::function<void()> work)
    : m_thread([this, work = std::move(work)] {
          work();
          m_ended = true;
      }) {}

void Worker::join() {
    if (m_thread.joinable())
        m_thread.join();
}

void Worker::wake() {
    constexpr std::chrono::milliseconds interval{5};
    installWakeSignal();
    while (m_thread.joinable() && !m_ended) {
        pthread_kill(m_thread.native_handle(), wakeSignal);
        std::this_thread::sleep_for(interval);
    }
}

ReadLane::ReadLane(Reader& reader)
    : m_reader(reader), m_queue(mostWeight), m_worker([this] { read(); }) {}

ReadLane::~ReadLane() {
    m_reader.input().stop();
    m_queue.close();
    m_worker.wake();
}

void ReadLane::read() {
    try {
        while (std::optional<Item> item = m_reader.next()) {
            const std::size_t weight = weightOf(*item);
            if (!m_queue.push(std::move(*item), weight, wait))
                return;
        }
        m_queue.close();
    } catch (...) {
        m_queue.close(std::current_exception());
    }
}

std::optional<Item> ReadLane::next() {
    stopIfInterrupted();
    return m_queue.pop(stopIfInterrupted);
}

WriteLane::WriteLane(Writer& writer)
    : m_writer(writer), m_queue(mostWeight), m_worker([this] { write(); }) {}

WriteLane::~WriteLane() {
    m_queue.close(std::make_exception_ptr(Abandoned()));
    m_writer.stop();
    m_worker.wake();
}

void WriteLane::write() {
    try {
        while (std::optional<Item> item = m_queue.pop(wait))
            m_writer.write(*item);
    } catch (const Abandoned&) {
    } catch (...) {
        m_error = std::current_exception();
        m_queue.close(m_error);
    }
}

void WriteLane::push(Item item) {
    const std::size_t weight = weightOf(item);
    if (m_queue.push(std::move(item), weight, stopIfInterrupted))
        return;
    m_worker.join();
    std::rethrow_exception(m_error);
}

void WriteLane::finish() {
    m_queue.close();
    m_worker.join();
    if (m_error)
        std::rethrow_exception(m_error);
    stopIfInterrupted();
    m_writer.finish();
}

void runRoad(Reader& reader, Writer& writer, const std::function<void(Frame&)>& draw) {
    ReadLane in(reader);
    WriteLane out(writer);
    bool more = true;
    while (more) {
        std::optional<Item> item = in.next();
        if (!item)
            break;
        if (const auto* frame = std::get_if<std::unique_ptr<Frame>>(&*item)) {
            draw(**frame);
            more = !writer.takesOneFrame();
        }
        out.push(std::move(*item));
    }
    out.finish();
}
