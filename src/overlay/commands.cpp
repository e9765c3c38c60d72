// Control commands: setting and asking at run time.
#include "zrdraw/zroverlay.h"

#include <cstring>

namespace {

// The time code switches, as a command has them.
constexpr unsigned int ltcBit = 1, vitcBit = 2, vsyncBit = 16;

bool isValid(const MEDIACMD& command, unsigned int field) {
    return (command.cmdFlags & field) != 0;
}

void take(const MEDIACMD& command, unsigned int field, unsigned int value, unsigned int& setting) {
    if (isValid(command, field))
        setting = value;
}

// The three values that most commands have: a switch and a place.
void takeValues(const MEDIACMD& command, unsigned int& a, unsigned int& b, unsigned int& c) {
    take(command, zrValidValueA, command.valueA, a);
    take(command, zrValidValueB, command.valueB, b);
    take(command, zrValidValueC, command.valueC, c);
}

void giveValues(MEDIACMD& command, unsigned int a, unsigned int b, unsigned int c) {
    command.valueA = a;
    command.valueB = b;
    command.valueC = c;
    command.cmdFlags |= zrValidValueA | zrValidValueB | zrValidValueC;
}

// The low byte of paramA.
void takeByte(const MEDIACMD& command, unsigned int& setting) {
    take(command, zrValidParamA, command.paramA & 0xFF, setting);
}

// By contract: the switch's value is what must be a slot's number, here and in slotAsked.
unsigned int slotSet(const MEDIACMD& command) {
    const bool chosen =
        isValid(command, zrValidParamA) && command.valueA < unsigned{CZrOverlay::textSlots};
    return chosen ? command.paramA : 0;
}

unsigned int slotAsked(const MEDIACMD& command) {
    const bool chosen =
        isValid(command, zrValidValueA) && command.valueA < unsigned{CZrOverlay::textSlots};
    return chosen ? command.valueA : 0;
}

void setTimeCode(CZrOverlay& overlay, const MEDIACMD& command) {
    if (isValid(command, zrValidValueA)) {
        overlay.TimeCodeLTCEnable = (command.valueA & ltcBit) != 0;
        overlay.TimeCodeVITCEnable = (command.valueA & vitcBit) != 0;
        overlay.TimeCodeVsyncEnable = (command.valueA & vsyncBit) != 0;
    }
    take(command, zrValidValueB, command.valueB, overlay.TimeCodeX);
    take(command, zrValidValueC, command.valueC, overlay.TimeCodeY);
    takeByte(command, overlay.TimeCodeSize);
}

// By contract: one code, that of the first switch that is on.
unsigned int timeCodeSwitch(const CZrOverlay& overlay) {
    if (overlay.TimeCodeLTCEnable != 0)
        return ltcBit;
    if (overlay.TimeCodeVITCEnable != 0)
        return vitcBit;
    return overlay.TimeCodeVsyncEnable != 0 ? vsyncBit : 0;
}

void setCustomText(CZrOverlay& overlay, const MEDIACMD& command) {
    const unsigned int slot = slotSet(command);
    takeValues(command, overlay.CustomTextEnabled[slot], overlay.CustomTextX[slot],
               overlay.CustomTextY[slot]);
    if (!isValid(command, zrValidText))
        return;
    char*& text = overlay.CustomText[slot];
    delete[] text;
    text = nullptr;
    const char* given = command.cmdText;
    const std::size_t length = std::strlen(given);
    constexpr std::size_t room = 2;
    text = new char[length + room];
    std::memcpy(text, given, length + 1);
}

void giveText(MEDIACMD& command, const char* text) {
    std::memcpy(reinterpret_cast<char*>(&command) + offsetof(MEDIACMD, cmdText), text,
                std::strlen(text) + 1);
    command.cmdFlags |= zrValidText;
}

void set(CZrOverlay& overlay, const MEDIACMD& command) {
    switch (command.subCode) {
    case zrOverlayMaster:
        take(command, zrValidValueA, command.valueA, overlay.Enabled);
        take(command, zrValidValueB, command.valueB, overlay.FillBackground);
        break;
    case zrOverlayAudio:
        takeValues(command, overlay.AudioEnable, overlay.AudioX, overlay.AudioY);
        take(command, zrValidParamB, command.paramB, overlay.AudioChannels);
        break;
    case zrOverlayVChip:
        take(command, zrValidValueA, command.valueA, overlay.VChipEnable);
        break;
    case zrOverlayCaptions:
        take(command, zrValidValueA, command.valueA, overlay.CaptionsEnable);
        take(command, zrValidValueB, command.valueB, overlay.CaptionSource);
        break;
    case zrOverlayTimeCode:
        setTimeCode(overlay, command);
        break;
    case zrOverlayWatermark:
        takeValues(command, overlay.WatermarkEnable, overlay.WatermarkX, overlay.WatermarkY);
        takeByte(command, overlay.WatermarkOpacity);
        break;
    case zrOverlaySourceFormat:
        takeValues(command, overlay.SourceFormatEnable, overlay.SourceFormatX,
                   overlay.SourceFormatY);
        break;
    case zrOverlayCustomText:
        setCustomText(overlay, command);
        break;
    default:
        break;
    }
}

void answerTimeCode(const CZrOverlay& overlay, MEDIACMD& command) {
    giveValues(command, timeCodeSwitch(overlay), overlay.TimeCodeX, overlay.TimeCodeY);
    command.paramA = overlay.tcType << 8 | overlay.TimeCodeSize;
    command.cmdFlags |= zrValidParamA;
}

void answerCustomText(const CZrOverlay& overlay, MEDIACMD& command) {
    const unsigned int slot = slotAsked(command);
    giveValues(command, overlay.CustomTextEnabled[slot], overlay.CustomTextX[slot],
               overlay.CustomTextY[slot]);
    giveText(command, overlay.CustomText[slot]);
}

void answerOne(MEDIACMD& command, unsigned int value) {
    command.valueA = value;
    command.cmdFlags |= zrValidValueA;
}

void answer(const CZrOverlay& overlay, MEDIACMD& command) {
    switch (command.subCode) {
    case zrOverlayMaster: // by contract, without FillBackground
        answerOne(command, overlay.Enabled);
        break;
    case zrOverlayAudio:
        giveValues(command, overlay.AudioEnable, overlay.AudioX, overlay.AudioY);
        command.paramB = overlay.AudioChannels;
        command.cmdFlags |= zrValidParamB;
        break;
    case zrOverlayVChip:
        answerOne(command, overlay.VChipEnable);
        break;
    case zrOverlayCaptions:
        answerOne(command, overlay.CaptionsEnable);
        command.valueB = overlay.CaptionSource;
        command.cmdFlags |= zrValidValueB;
        break;
    case zrOverlayTimeCode:
        answerTimeCode(overlay, command);
        break;
    case zrOverlayWatermark:
        giveValues(command, overlay.WatermarkEnable, overlay.WatermarkX, overlay.WatermarkY);
        command.paramA = overlay.WatermarkOpacity;
        command.cmdFlags |= zrValidParamA;
        giveText(command, overlay.Watermark);
        break;
    case zrOverlaySourceFormat:
        giveValues(command, overlay.SourceFormatEnable, overlay.SourceFormatX,
                   overlay.SourceFormatY);
        break;
    case zrOverlayCustomText:
        answerCustomText(overlay, command);
        break;
    default:
        if (command.subCode >= zrOverlayReservedFirst && command.subCode <= zrOverlayReservedLast)
            answerOne(command, 0);
    }
}

} // namespace

int CZrOverlay::SetMode(MEDIACMD* command) {
    if (command == nullptr)
        return 0;
    const unsigned int given = command->valueA;
    if (command->cmd == zrCommandSet)
        set(*this, *command);
    else if (command->cmd == zrCommandGet || command->cmd == zrCommandGetState)
        answer(*this, *command);
    return static_cast<int>(given);
}
