// Commands for where coordinates lie on the frame.
#include "script/operations/operation_rows.h"

using namespace rows;

namespace {

int setUnit(Scene& scene, const Arguments& a) {
    scene.setUnit(a.number(0), a.number(1));
    return 0;
}

int setSafe(Scene& scene, const Arguments& a) {
    scene.place.setSafe(a.number(0));
    return 0;
}

int setAnchor(Scene& scene, const Arguments& a) {
    scene.place.setAnchor(partBefore(a.word(0)), partBefore(a.word(1)));
    return 0;
}

Parameter cells(std::string_view name) {
    return {Kind::Number, name, 1, coordinateLimit};
}

} // namespace

std::vector<Operation> placeOperations() {
    return {
        {"unit",
         {cells("columns"), cells("rows")},
         "coordinates, sizes, w and h count in a grid over the frame, such as unit 1920 1080",
         setUnit},
        {"safe",
         {{Kind::Number, "part", 0.1, 1}},
         "at counts from the edges of that part of the frame, such as safe 0.9",
         setSafe},
        {"at",
         {choice("horizontal", horizontalWords), choice("vertical", verticalWords)},
         "coordinates count from there: left, centre, right; top, middle, bottom",
         setAnchor},
    };
}
