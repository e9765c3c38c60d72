// Critical sections: a recursive pthread mutex inside the storage the caller brings.
#include "zrdraw/platform/events.h"

#include <pthread.h>

namespace {

static_assert(sizeof(pthread_mutex_t) <= sizeof(zrOSCriticalSection));
static_assert(alignof(pthread_mutex_t) <= alignof(zrOSCriticalSection));

pthread_mutex_t* mutexOf(zrOSCriticalSection* section) {
    return reinterpret_cast<pthread_mutex_t*>(section->opaque);
}

} // namespace

ZRDRAW_API void zrOSInitializeCriticalSection(zrOSCriticalSection* section) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(mutexOf(section), &attributes);
    pthread_mutexattr_destroy(&attributes);
}

ZRDRAW_API void zrOSDeleteCriticalSection(zrOSCriticalSection* section) {
    pthread_mutex_destroy(mutexOf(section));
}

ZRDRAW_API void zrOSEnterCriticalSection(zrOSCriticalSection* section) {
    pthread_mutex_lock(mutexOf(section));
}

ZRDRAW_API int zrOSTryEnterCriticalSection(zrOSCriticalSection* section) {
    return pthread_mutex_trylock(mutexOf(section)) == 0 ? 1 : 0;
}

ZRDRAW_API void zrOSLeaveCriticalSection(zrOSCriticalSection* section) {
    pthread_mutex_unlock(mutexOf(section));
}
