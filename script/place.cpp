#include "script/place.h"

#include <algorithm>
#include <cmath>

using Role = Parameter::Role;

Place::Place(int width, int height)
    : m_width(width), m_height(height), m_columns(width), m_rows(height) {}

void Place::setUnit(double columns, double rows) {
    m_columns = columns;
    m_rows = rows;
    settle();
}

void Place::setSafe(double part) {
    m_safe = part;
    settle();
}

void Place::setAnchor(double horizontal, double vertical) {
    m_horizontal = horizontal;
    m_vertical = vertical;
    settle();
}

void Place::settle() {
    m_scaleX = m_width / m_columns;
    m_scaleY = m_height / m_rows;
    const auto origin = [this](double cells, double part) {
        const double margin = std::round(cells * (1 - m_safe) / 2);
        return margin + std::floor((cells - 1 - 2 * margin) * part);
    };
    m_originX = origin(m_columns, m_horizontal);
    m_originY = origin(m_rows, m_vertical);
    m_isPlain = m_scaleX == 1 && m_scaleY == 1 && m_originX == 0 && m_originY == 0;
}

// A right or bottom edge is the last pixel of its cell, so that areas of a grid leave no gaps.
double Place::pixels(double number, Role role) const {
    switch (role) {
    case Role::Plain:
        break;
    case Role::X:
        return std::round((m_originX + number) * m_scaleX);
    case Role::Y:
        return std::round((m_originY + number) * m_scaleY);
    case Role::Right:
        return std::round((m_originX + number + 1) * m_scaleX) - 1;
    case Role::Bottom:
        return std::round((m_originY + number + 1) * m_scaleY) - 1;
    case Role::Width:
        return std::round(number * m_scaleX);
    case Role::Height:
    case Role::Length:
        return std::round(number * m_scaleY);
    }
    return number;
}

void Place::apply(const Operation& operation, Arguments& arguments) const {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const Parameter& parameter = operation.parameters[i];
        Argument& argument = arguments.at(i);
        const auto held = [&](double number, Role role) {
            return std::clamp(pixels(number, role), parameter.low, parameter.high);
        };
        const std::vector<double>& coordinates = argument.coordinates;
        for (std::size_t point = 0; point < argument.points.size(); ++point)
            argument.points[point] = {static_cast<int>(held(coordinates[2 * point], Role::X)),
                                      static_cast<int>(held(coordinates[2 * point + 1], Role::Y))};
        const bool isNumber =
            argument.given && argument.word == Argument::noWord &&
            (parameter.kind == Parameter::Kind::Whole || parameter.kind == Parameter::Kind::Number);
        if (!isNumber)
            continue;
        argument.number = held(argument.number, parameter.role);
        if (parameter.kind == Parameter::Kind::Whole)
            argument.number = std::round(argument.number);
    }
}
