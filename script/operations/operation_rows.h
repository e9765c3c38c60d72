// What the rows of the table of operations are written with: parameters, calls and refusals.
#pragma once

#include "script/operations/operations.h"
#include "script/scene.h"

#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The parts of the table, by subject.
std::vector<Operation> flowOperations();
std::vector<Operation> placeOperations();
std::vector<Operation> stateOperations();
std::vector<Operation> lineOperations();
std::vector<Operation> curveOperations();
std::vector<Operation> areaOperations();
std::vector<Operation> textOperations();
std::vector<Operation> pictureOperations();

namespace rows {

using Kind = Parameter::Kind;
using Role = Parameter::Role;
using Parameters = std::vector<Parameter>;
using Words = std::vector<std::string_view>;

inline Parameter whole(std::string_view name, double low, double high, Role role = Role::Plain) {
    return {Kind::Whole, name, low, high, {}, false, role};
}

inline Parameter coordinate(std::string_view name, Role role) {
    return whole(name, -coordinateLimit, coordinateLimit, role);
}

inline Parameter length(std::string_view name, Role role = Role::Length, double least = 0) {
    return whole(name, least, coordinateLimit, role);
}

inline constexpr double angleLimit = 3600;

inline Parameter angle(std::string_view name) {
    return {Kind::Number, name, -angleLimit, angleLimit};
}

inline Parameter component(std::string_view name) {
    return {Kind::Number, name, 0, 1};
}

inline Parameter optionalComponent(std::string_view name) {
    return {Kind::Number, name, 0, 1, {}, true};
}

inline Parameter choice(std::string_view name, const Words& words) {
    return {Kind::Choice, name, 0, 0, words};
}

inline Parameter text() {
    return {Kind::Text, "text"};
}

inline Parameter points() {
    return {Kind::Points, "points", -coordinateLimit, coordinateLimit};
}

// Followed by so many parameters of its own.
inline Parameter flag(std::string_view name, std::size_t takes = 0) {
    return {Kind::Flag, name, 0, 0, {}, true, Role::Plain, takes};
}

// The places that are named by words, from the first of the canvas to its last.
inline const Words horizontalWords = {"left", "centre", "right"};
inline const Words verticalWords = {"top", "middle", "bottom"};

// How much of an extent lies before one of these words.
inline double partBefore(std::size_t word) {
    return static_cast<double>(word) / 2;
}

// Which point of what is drawn lies at its coordinates.
inline Parameters anchor() {
    return {flag("anchor", 2), choice("horizontal", horizontalWords),
            choice("vertical", verticalWords)};
}

// How far before its coordinate something begins that has so many pixels.
inline int anchorOffset(const Arguments& a, std::size_t word, int pixels) {
    return a.given(word) ? static_cast<int>((pixels - 1) * partBefore(a.word(word))) : 0;
}

// X and Y in turns.
inline Parameters coordinates(const Words& names) {
    Parameters result;
    for (const auto name : names)
        result.push_back(coordinate(name, result.size() % 2 == 0 ? Role::X : Role::Y));
    return result;
}

inline Parameters onePoint() {
    return coordinates({"x", "y"});
}

inline Parameters twoPoints() {
    return coordinates({"x0", "y0", "x1", "y1"});
}

inline Parameters box() {
    return {coordinate("l", Role::X), coordinate("t", Role::Y), coordinate("r", Role::Right),
            coordinate("b", Role::Bottom)};
}

inline Parameters with(Parameters first, const Parameters& more) {
    first.insert(first.end(), more.begin(), more.end());
    return first;
}

template <class... T, std::size_t... i>
int spread(ZRDraw& draw, int (ZRDraw::*operation)(T...), const Arguments& a,
           std::index_sequence<i...>) {
    return (draw.*operation)(static_cast<T>(a.number(i))...);
}

template <class... T>
int spread(ZRDraw& draw, int (ZRDraw::*operation)(T...), const Arguments& a) {
    return spread(draw, operation, a, std::index_sequence_for<T...>{});
}

// Runs an operation that takes the numbers of the command in their order.
template <auto operation>
int call(Scene& scene, const Arguments& a) {
    return spread(scene.draw, operation, a);
}

// Runs an operation that takes the points of the command and their number.
template <int (ZRDraw::*operation)(const _POINT*, unsigned int)>
int through(Scene& scene, const Arguments& a) {
    return (scene.draw.*operation)(a.points(0).data(), static_cast<unsigned>(a.points(0).size()));
}

// The centre is in the first two numbers; a second radius is that of the height. Beyond the limit
// the edge would come back on the other side of the coordinates.
template <std::size_t rx, std::size_t ry = rx>
std::string edgeFault(const Arguments& a) {
    const auto beyond = [&a](std::size_t centre, std::size_t radius) {
        return std::abs(a.number(centre)) + a.number(radius) > coordinateLimit;
    };
    return beyond(0, rx) || beyond(1, ry) ? "its edge lies beyond the largest coordinate" : "";
}

} // namespace rows
