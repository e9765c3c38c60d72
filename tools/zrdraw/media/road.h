// The road from a file to a result: reading, drawing and writing on a thread each.
#pragma once

#include "media/queue.h"
#include "media/reader.h"
#include "media/writer.h"

#include <atomic>
#include <functional>
#include <optional>
#include <thread>

// A thread that can be woken from what it waits for in the system, to end.
class Worker {
public:
    explicit Worker(std::function<void()> work);
    ~Worker() { join(); }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    // Waits for the end of the work.
    void join();

    // Makes system calls that block end early, again and again, until the work has ended.
    void wake();

private:
    std::atomic<bool> m_ended{false};
    std::thread m_thread;
};

// A reader on a thread of its own.
class ReadLane {
public:
    explicit ReadLane(Reader& reader);
    ~ReadLane();

    // The next frame or packet; nothing at the end. Throws what the reader threw.
    std::optional<Item> next();

private:
    void read();

    Reader& m_reader;
    Queue<Item> m_queue;
    Worker m_worker;
};

// A writer on a thread of its own.
class WriteLane {
public:
    explicit WriteLane(Writer& writer);
    ~WriteLane();

    // Throws what the writer threw.
    void push(Item item);

    // All was pushed: completes the result.
    void finish();

private:
    void write();

    Writer& m_writer;
    Queue<Item> m_queue;
    std::exception_ptr m_error; // what the writer threw; looked at when the thread has ended
    Worker m_worker;
};

// Every item goes from the reader through `draw`, on the caller's thread, to the writer, which at
// the end completes the result. What any stage throws ends all of them and is thrown again, and so
// does an interrupt.
void runRoad(Reader& reader, Writer& writer, const std::function<void(Frame&)>& draw);
