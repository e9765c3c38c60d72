// Where the coordinates of commands lie on the frame.
#pragma once

#include "script/operations/operations.h"

// A grid over the frame, of pixels unless told, a part of the frame in its middle that is safe to
// use, and a pixel of that part from which coordinates count.
class Place {
public:
    Place(int width, int height);

    // The grid that the whole frame has.
    void setUnit(double columns, double rows);
    // How much of width and height is safe, 1 is all.
    void setSafe(double part);
    // From the left or top of the safe part, 0, to its right or bottom, 1.
    void setAnchor(double horizontal, double vertical);

    double columns() const { return m_columns; }
    double rows() const { return m_rows; }

    // Whether coordinates are pixels of the frame as they stand.
    bool isPlain() const { return m_isPlain; }

    // What a number means in pixels.
    double pixels(double number, Parameter::Role role) const;

    // Turns the numbers of a command from the script's into the pixels that are drawn, as near as
    // the parameters allow.
    void apply(const Operation& operation, Arguments& arguments) const;

    // And a width in pixels back.
    double unitsOf(double pixelWidth) const { return pixelWidth / m_scaleX; }

private:
    void settle();

    double m_width, m_height;
    double m_columns, m_rows;
    double m_safe = 1;
    double m_horizontal = 0, m_vertical = 0;

    bool m_isPlain = true;
    double m_scaleX = 1, m_scaleY = 1;
    double m_originX = 0, m_originY = 0; // in the grid
};
