#include "media/av_messages.h"

#include "media/av.h"

#include <cstdarg>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

extern "C" {
#include <libavutil/log.h>
}

namespace {

thread_local std::string lastMessage;

void keepMessage(void*, int level, const char* format, va_list arguments) {
    if (level > AV_LOG_ERROR)
        return;
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    std::string message(text);
    while (!message.empty() && (message.back() == '\n' || message.back() == '.'))
        message.pop_back();
    if (!message.empty())
        lastMessage = std::move(message);
}

} // namespace

void quietAv() {
    av_log_set_callback(keepMessage);
}

SilentStderr::SilentStderr() : m_kept(::fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {
    const int nothing = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (m_kept >= 0 && nothing >= 0)
        ::dup2(nothing, STDERR_FILENO);
    if (nothing >= 0)
        ::close(nothing);
}

SilentStderr::~SilentStderr() {
    if (m_kept < 0)
        return;
    ::dup2(m_kept, STDERR_FILENO);
    ::close(m_kept);
}

AvMessages::AvMessages() {
    lastMessage.clear();
}

std::string AvMessages::cause(int error) const {
    return lastMessage.empty() ? avErrorText(error) : lastMessage;
}
