// Faults of bounds that end the process.
#pragma once

// Writes one line and aborts.
[[noreturn]] void fatalBounds(const char* what);
