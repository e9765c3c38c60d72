// Objects that leave the layer as an untyped handle. The handle owns the object until it is
// adopted back.
#pragma once

#include <memory>
#include <new>
#include <utility>

namespace zrhost {

// Callers across the C interface learn of missing memory by null, never by an exception.
template <class T, class... Arguments>
std::unique_ptr<T> makeOrNull(Arguments&&... arguments) {
    try {
        return std::make_unique<T>(std::forward<Arguments>(arguments)...);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

template <class T>
std::unique_ptr<T> adopt(void* handle) {
    return std::unique_ptr<T>(static_cast<T*>(handle));
}

} // namespace zrhost
