// Signals that ask the tool to end: the work stops and leaves nothing behind.
#pragma once

#include <functional>

bool isInterrupted();
void stopIfInterrupted();

// Runs the work; SIGINT, SIGTERM and SIGHUP end it with a Failure, unless they are ignored.
void runInterruptible(const std::function<void()>& work);
