// What a script can ask of the stream and of the frame that it runs on.
#pragma once

#include "common/meter_levels.h"

#include <cstdint>
#include <map>
#include <string>

struct StreamFacts {
    int width = 0;
    int height = 0;
    double framesPerSecond = 25;
    double sampleAspect = 1;   // width of a pixel by its height
    unsigned timeCodeType = 0; // by the table in zrhost.h
    unsigned channels = 0;     // of sound
    std::string file = {};     // without its folder
    std::map<std::string, std::string> tags = {};
};

struct FrameFacts {
    std::int64_t number = 0;   // in the stream, counted from 0
    double time = 0;           // seconds since the stream's first frame
    unsigned timeCode = 0;     // frames since midnight
    unsigned timeCodeType = 0; // by the table in zrhost.h
    MeterLevels levels{};
};
