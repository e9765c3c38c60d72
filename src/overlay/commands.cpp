// Control commands: setting and asking at run time.
#include "zrdraw/zroverlay.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace {

// A number of the record: the flag that makes it valid, where it stands, and what a set takes of
// it.
struct Field {
    unsigned int flag;
    std::size_t offset;
    unsigned int taken;
};
constexpr unsigned int whole = 0xFFFFFFFF, lowByte = 0xFF;
constexpr Field fields[] = {{zrValidValueA, offsetof(MEDIACMD, valueA), whole},
                            {zrValidValueB, offsetof(MEDIACMD, valueB), whole},
                            {zrValidValueC, offsetof(MEDIACMD, valueC), whole},
                            {zrValidParamA, offsetof(MEDIACMD, paramA), lowByte},
                            {zrValidParamB, offsetof(MEDIACMD, paramB), whole}};

// The settings of a sub-code, in the order of the fields; null where it has none.
struct Row {
    unsigned int subCode;
    unsigned int CZrOverlay::*settings[std::size(fields)];
    unsigned int unasked; // flags of what a query by contract does not tell
};
constexpr Row rows[] = {
    {zrOverlayMaster, {&CZrOverlay::Enabled, &CZrOverlay::FillBackground}, zrValidValueB},
    {zrOverlayAudio,
     {&CZrOverlay::AudioEnable, &CZrOverlay::AudioX, &CZrOverlay::AudioY, nullptr,
      &CZrOverlay::AudioChannels},
     0},
    {zrOverlayVChip, {&CZrOverlay::VChipEnable}, 0},
    {zrOverlayCaptions, {&CZrOverlay::CaptionsEnable, &CZrOverlay::CaptionSource}, 0},
    {zrOverlayTimeCode, // its switches are below
     {nullptr, &CZrOverlay::TimeCodeX, &CZrOverlay::TimeCodeY, &CZrOverlay::TimeCodeSize},
     0},
    {zrOverlayWatermark,
     {&CZrOverlay::WatermarkEnable, &CZrOverlay::WatermarkX, &CZrOverlay::WatermarkY,
      &CZrOverlay::WatermarkOpacity},
     0},
    {zrOverlaySourceFormat,
     {&CZrOverlay::SourceFormatEnable, &CZrOverlay::SourceFormatX, &CZrOverlay::SourceFormatY},
     0},
};

// The numbers of a text slot, in the order of the fields.
constexpr unsigned int (CZrOverlay::*slotSettings[])[CZrOverlay::textSlots] = {
    &CZrOverlay::CustomTextEnabled, &CZrOverlay::CustomTextX, &CZrOverlay::CustomTextY};

// The time code switches as a command has them, the first that is on first.
struct Switch {
    unsigned int bit;
    unsigned int CZrOverlay::*setting;
};
constexpr Switch timeCodeSwitches[] = {{zrOverlayLtc, &CZrOverlay::TimeCodeLTCEnable},
                                       {zrOverlayVitc, &CZrOverlay::TimeCodeVITCEnable},
                                       {zrOverlayVsync, &CZrOverlay::TimeCodeVsyncEnable}};

// Null for the sub-codes that are more than numbers, and for unknown ones.
const Row* rowOf(unsigned int subCode) {
    const Row* const row = std::find_if(std::begin(rows), std::end(rows),
                                        [subCode](const Row& r) { return r.subCode == subCode; });
    return row != std::end(rows) ? row : nullptr;
}

bool isValid(const MEDIACMD& command, unsigned int flag) {
    return (command.cmdFlags & flag) != 0;
}

void take(const MEDIACMD& command, const Field& field, unsigned int& setting) {
    if (!isValid(command, field.flag))
        return;
    std::memcpy(&setting, reinterpret_cast<const char*>(&command) + field.offset, sizeof setting);
    setting &= field.taken;
}

void give(MEDIACMD& command, const Field& field, unsigned int value) {
    std::memcpy(reinterpret_cast<char*>(&command) + field.offset, &value, sizeof value);
    command.cmdFlags |= field.flag;
}

void giveText(MEDIACMD& command, const char* text) {
    std::memcpy(reinterpret_cast<char*>(&command) + offsetof(MEDIACMD, cmdText), text,
                std::strlen(text) + 1);
    command.cmdFlags |= zrValidText;
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

void setTimeCodeSwitches(CZrOverlay& overlay, const MEDIACMD& command) {
    if (!isValid(command, zrValidValueA))
        return;
    for (const Switch& each : timeCodeSwitches)
        overlay.*each.setting = (command.valueA & each.bit) != 0;
}

void setText(CZrOverlay& overlay, const MEDIACMD& command, unsigned int slot) {
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

void setSlot(CZrOverlay& overlay, const MEDIACMD& command) {
    const unsigned int slot = slotSet(command);
    for (std::size_t i = 0; i < std::size(slotSettings); ++i)
        take(command, fields[i], (overlay.*slotSettings[i])[slot]);
    setText(overlay, command, slot);
}

void set(CZrOverlay& overlay, const MEDIACMD& command) {
    if (const Row* row = rowOf(command.subCode))
        for (std::size_t i = 0; i < std::size(fields); ++i)
            if (row->settings[i] != nullptr)
                take(command, fields[i], overlay.*row->settings[i]);
    if (command.subCode == zrOverlayTimeCode)
        setTimeCodeSwitches(overlay, command);
    else if (command.subCode == zrOverlayCustomText)
        setSlot(overlay, command);
}

// By contract: one code, that of the first switch that is on.
void answerTimeCode(const CZrOverlay& overlay, MEDIACMD& command) {
    const auto* const first =
        std::find_if(std::begin(timeCodeSwitches), std::end(timeCodeSwitches),
                     [&overlay](const Switch& each) { return overlay.*each.setting != 0; });
    give(command, fields[0], first != std::end(timeCodeSwitches) ? first->bit : 0);
    command.paramA |= overlay.tcType << 8; // the size stands there already
}

void answerSlot(const CZrOverlay& overlay, MEDIACMD& command) {
    const unsigned int slot = slotAsked(command);
    for (std::size_t i = 0; i < std::size(slotSettings); ++i)
        give(command, fields[i], (overlay.*slotSettings[i])[slot]);
    giveText(command, overlay.CustomText[slot]);
}

void answer(const CZrOverlay& overlay, MEDIACMD& command) {
    if (const Row* row = rowOf(command.subCode))
        for (std::size_t i = 0; i < std::size(fields); ++i)
            if (row->settings[i] != nullptr && (row->unasked & fields[i].flag) == 0)
                give(command, fields[i], overlay.*row->settings[i]);
    if (command.subCode == zrOverlayTimeCode)
        answerTimeCode(overlay, command);
    else if (command.subCode == zrOverlayWatermark)
        giveText(command, overlay.Watermark);
    else if (command.subCode == zrOverlayCustomText)
        answerSlot(overlay, command);
    else if (command.subCode >= zrOverlayReservedFirst && command.subCode <= zrOverlayReservedLast)
        give(command, fields[0], 0);
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
