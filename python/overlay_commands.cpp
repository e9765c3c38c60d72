// Control commands of overlays, as a live host sends them between frames.
#include "python/overlay_burner.h"
#include "zrdraw/overlay_settings.h"

#include <cstring>
#include <vector>

#include <pybind11/stl.h>

using namespace py::literals;

namespace {

using Optional = std::optional<Whole>;

// A record with room for a text, whose fields are valid once they are set.
class Command {
public:
    explicit Command(unsigned subCode) : m_memory(sizeof(MEDIACMD) + zrOverlayTextLimit) {
        record().cmd = zrCommandSet;
        record().subCode = subCode;
    }

    Command& with(zrValidField field, unsigned MEDIACMD::*member, unsigned value) {
        // The record is packed, so a member may stand at any address.
        record().*member = value;
        record().cmdFlags |= field;
        return *this;
    }

    Command& with(zrValidField field, unsigned MEDIACMD::*member, const Optional& value,
                  const char* name, unsigned most) {
        if (!value)
            return *this;
        return with(field, member,
                    static_cast<unsigned>(withinRange(*value, name, 0, static_cast<int>(most))));
    }

    Command& place(const Optional& x, const Optional& y) {
        with(zrValidValueB, &MEDIACMD::valueB, x, "x", zrOverlayFarthest);
        return with(zrValidValueC, &MEDIACMD::valueC, y, "y", zrOverlayFarthest);
    }

    void sendTo(Burner& burner) {
        burner.with([this](CZrOverlay& overlay) { return overlay.SetMode(&record()); });
    }

private:
    MEDIACMD& record() { return *reinterpret_cast<MEDIACMD*>(m_memory.data()); }

    std::vector<char> m_memory;
};

Command switching(unsigned subCode, bool on) {
    Command command(subCode);
    command.with(zrValidValueA, &MEDIACMD::valueA, on ? 1U : 0U);
    return command;
}

void setMaster(Burner& burner, bool on, std::optional<bool> fillBackground) {
    Command command = switching(zrOverlayMaster, on);
    if (fillBackground)
        command.with(zrValidValueB, &MEDIACMD::valueB, *fillBackground ? 1U : 0U);
    command.sendTo(burner);
}

void setAudio(Burner& burner, bool on, const Optional& x, const Optional& y,
              const Optional& channels) {
    switching(zrOverlayAudio, on)
        .place(x, y)
        .with(zrValidParamB, &MEDIACMD::paramB, channels, "channels", mostMeters)
        .sendTo(burner);
}

void setTimeCode(Burner& burner, bool ltc, bool vitc, const Optional& x, const Optional& y,
                 const Optional& size) {
    Command(zrOverlayTimeCode)
        .with(zrValidValueA, &MEDIACMD::valueA,
              (ltc ? unsigned{zrOverlayLtc} : 0U) | (vitc ? unsigned{zrOverlayVitc} : 0U))
        .place(x, y)
        .with(zrValidParamA, &MEDIACMD::paramA, size, "size", zrOverlayLargestSize)
        .sendTo(burner);
}

void setWatermark(Burner& burner, bool on, const Optional& x, const Optional& y) {
    switching(zrOverlayWatermark, on).place(x, y).sendTo(burner);
}

void setSourceFormat(Burner& burner, bool on, const Optional& x, const Optional& y) {
    switching(zrOverlaySourceFormat, on).place(x, y).sendTo(burner);
}

} // namespace

void bindOverlayCommands(OverlayClass& overlay) {
    overlay
        .def("set_master", &setMaster, "on"_a, "fill_background"_a = py::none(),
             "The command that switches the overlay, and the background of its texts. In all "
             "commands what is None stays.")
        .def("set_audio", &setAudio, "on"_a, "x"_a = py::none(), "y"_a = py::none(),
             "channels"_a = py::none(), "The command for the audio meters.")
        .def("set_time_code", &setTimeCode, "ltc"_a = false, "vitc"_a = false, "x"_a = py::none(),
             "y"_a = py::none(), "size"_a = py::none(),
             "The command for the time codes; one that is not given is switched off.")
        .def("set_watermark", &setWatermark, "on"_a, "x"_a = py::none(), "y"_a = py::none(),
             "The command for the watermark; the file is the attribute watermark.")
        .def("set_source_format", &setSourceFormat, "on"_a, "x"_a = py::none(), "y"_a = py::none(),
             "The command for the line of the source.");
}
