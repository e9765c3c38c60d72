#include "media/av_messages.h"

#include "media/av.h"

#include <cstdarg>
#include <cstdio>

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

AvMessages::AvMessages() {
    lastMessage.clear();
}

std::string AvMessages::cause(int error) const {
    return lastMessage.empty() ? avErrorText(error) : lastMessage;
}
