/* A host without libzrhost: it brings every operation that the library asks for. This one has one
 * thread at a time, keeps settings in memory, and has no time codes, fonts or media files; it mixes
 * two pictures and tells what came out. */
#include <zrdraw/platform/config_store.h>
#include <zrdraw/platform/events.h>
#include <zrdraw/platform/files.h>
#include <zrdraw/platform/media.h>
#include <zrdraw/platform/memory.h>
#include <zrdraw/platform/resize.h>
#include <zrdraw/platform/threads.h>
#include <zrdraw/transitions.h>

#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

/* Threads: the work is done where it is started. */
void* zrOSCreateThread(void* attributes, unsigned long stackSize, zrOSThreadRoutine* routine,
                       void* argument, unsigned int flags, unsigned int* threadId,
                       const char* name) {
    (void)attributes, (void)stackSize, (void)flags, (void)name;
    *threadId = 1;
    routine(argument);
    return argument;
}
int zrOSCloseThread(void* thread, const char* name) {
    return (void)thread, (void)name, 0;
}
void* zrOSGetCurrentThread(void) {
    return NULL;
}
int zrOSSetThreadPriority(void* thread, int priority) {
    return (void)thread, (void)priority, 1;
}
int zrOSGetThreadPriority(void* thread) {
    return (void)thread, 0;
}
int zrOSInterlockedIncrement(int* count) {
    return ++*count;
}
int zrOSInterlockedDecrement(int* count) {
    return --*count;
}

/* Events and locks have nobody to wait for. */
void* zrOSCreateEvent(void* attributes, int manual, int initial, const char* name) {
    return (void)attributes, (void)manual, (void)initial, (void)name, NULL;
}
int zrOSCloseEvent(void* event) {
    return (void)event, 1;
}
int zrOSSetEvent(void* event) {
    return (void)event, 1;
}
int zrOSWaitForEvent(void* event, unsigned int timeout) {
    return (void)event, (void)timeout, 0;
}
void zrOSInitializeCriticalSection(zrOSCriticalSection* section) {
    (void)section;
}
void zrOSDeleteCriticalSection(zrOSCriticalSection* section) {
    (void)section;
}
void zrOSEnterCriticalSection(zrOSCriticalSection* section) {
    (void)section;
}
int zrOSTryEnterCriticalSection(zrOSCriticalSection* section) {
    return (void)section, 1;
}
void zrOSLeaveCriticalSection(zrOSCriticalSection* section) {
    (void)section;
}

void* CopyMemoryFast(void* dst, const void* src, unsigned long bytes) {
    return memcpy(dst, src, bytes);
}
void* zrOSCopyMemory(void* dst, const void* src, unsigned long bytes) {
    return memcpy(dst, src, bytes);
}
void* SetMemoryFast(void* dst, unsigned int value, unsigned long bytes) {
    for (unsigned long i = 0; i < bytes; ++i)
        ((unsigned char*)dst)[i] = (unsigned char)(value >> 8 * (i % 4));
    return dst;
}
void* ZRAlloc(unsigned int bytes) {
    return aligned_alloc(64, (bytes / 64 + 1) * 64);
}
void ZRFree(void* memory) {
    free(memory);
}

int zrOSGetAppDir(char* path) {
    return path[0] = 0;
}
int zrOSFileExists(const char* path) {
    return (void)path, 0;
}
void* zrOSLoadLibrary(const char* name, int mode) {
    return (void)name, (void)mode, NULL;
}
void* zrOSGetProcAddress(void* library, const char* name) {
    return (void)library, (void)name, NULL;
}
int zrOSFreeLibrary(void* library) {
    return (void)library, 0;
}
void ErrOut(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vfprintf(stderr, format, arguments);
    va_end(arguments);
}

int zrCFGKeyExists(int store, const char* path) {
    return (void)store, (void)path, 0;
}
int zrCFGValueString(int store, const char* path, const char* name, char* buffer,
                     unsigned int* length, int write) {
    (void)store, (void)path, (void)name, (void)buffer, (void)length;
    return write ? 0 : -1;
}
int zrCFGSave(int store, int reserved1, int reserved2) {
    return (void)store, (void)reserved1, (void)reserved2, 0;
}
char* itoa(int value, char* text, int base) {
    (void)base;
    sprintf(text, "%d", value);
    return text;
}

unsigned int vidGetTCType(double frameRate) {
    return (unsigned int)(frameRate + 0.5);
}
int tc2String(unsigned int frameCount, unsigned int typeAndFlags, char* text) {
    (void)typeAndFlags;
    return sprintf(text, "%u", frameCount), 0;
}
const char* kpxutilCodecTypeString(unsigned int code) {
    return (void)code, "video";
}
const char* kpxutilFileTypeString(unsigned int code) {
    return (void)code, "file";
}
int DFrameMemTrace(int operation, unsigned int dataBytes, unsigned int recordBytes, DFRAME** frame,
                   const char* tag, int line) {
    (void)operation, (void)dataBytes, (void)recordBytes, (void)frame, (void)tag, (void)line;
    return -1;
}

int pxsw_flip_vert(unsigned char* dst, unsigned char* src, unsigned int width, unsigned int height,
                   unsigned int pitch) {
    return (void)dst, (void)src, (void)width, (void)height, (void)pitch, 0;
}
int pxsw_flip_horz(unsigned char* dst, unsigned char* src, unsigned int width, unsigned int height,
                   unsigned int pitch, unsigned int mask) {
    return (void)dst, (void)src, (void)width, (void)height, (void)pitch, (void)mask, 0;
}
int ippiResizeGetBufSize(IppiRect srcRect, IppiRect dstRect, int channels, int interpolation,
                         int* bytes) {
    (void)srcRect, (void)dstRect, (void)channels, (void)interpolation;
    return *bytes = 0;
}
int ippiResizeSqrPixel_8u_C4R(const unsigned char* src, IppiSize srcSize, int srcStep,
                              IppiRect srcRect, unsigned char* dst, int dstStep, IppiRect dstRect,
                              double xFactor, double yFactor, double xShift, double yShift,
                              int interpolation, unsigned char* buffer) {
    (void)src, (void)srcSize, (void)srcStep, (void)srcRect, (void)dst, (void)dstStep, (void)dstRect;
    (void)xFactor, (void)yFactor, (void)xShift, (void)yShift, (void)interpolation, (void)buffer;
    return 0;
}
unsigned char* ippsMalloc_8u(int bytes) {
    return (void)bytes, NULL;
}
void ippsFree(void* memory) {
    (void)memory;
}

int main(void) {
    enum { width = 8, height = 2, bytes = width * height * 4 };
    unsigned char black[bytes] = {0}, white[bytes], mixed[bytes];
    memset(white, 255, sizeof white);
    ZRDraw_DisplayWipe(black, width * 4, white, width * 4, mixed, width * 4, 1, ptBGRA32, width,
                       height, 0, 0, 0, 0, 0, 0, 100, 50);
    for (int x = 0; x < width; ++x)
        putchar(mixed[4 * x] ? '#' : '.');
    putchar('\n');
    return 0;
}
