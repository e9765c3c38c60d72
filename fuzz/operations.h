// What the draw fuzzer can do to a drawing object.
#pragma once

#include "session.h"

#include <span>

using Operation = void (*)(Session&);

// In a fixed order, which inputs found earlier rely on: new ones go to the end.
std::span<const Operation> operations();
