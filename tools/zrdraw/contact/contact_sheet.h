// Frames of a clip in lines and columns on one picture, each over its time code.
#pragma once

#include "media/frame.h"
#include "media/stream_info.h"
#include "media/time_code.h"
#include "picture/convert.h"
#include "picture/scaler.h"
#include "sheet.h"

#include <cstdint>
#include <optional>
#include <string>

struct ContactGrid {
    int columns;
    int lines;
};

class ContactSheet {
public:
    // Of a clip of which so many frames are to come, 1 or more, on canvases of one shape.
    ContactSheet(const ContactGrid& grid, std::int64_t frames, const CanvasShape& shape,
                 const StreamInfo& info);

    // Whether the frame of that index, counted from the first that comes, is the next one shown.
    // The first frame and the last one are, and others between them at even distances.
    bool wants(std::int64_t index) const;

    bool isFull() const { return m_next == m_cells; }

    // Shows a finished frame in the next cell.
    void add(const Frame& frame);

    void write(const WriteOptions& options) { m_sheet.write(options); }

private:
    std::string timeOf(const Frame& frame) const;

    StreamInfo m_info;
    std::optional<TimeCode> m_timeCode; // nothing: no time code counts at the clip's rate
    std::int64_t m_frames;
    int m_columns;
    int m_cells;
    int m_next = 0;
    Canvas m_cell;
    int m_labelScale;
    int m_strideX, m_strideY;
    Sheet m_sheet;
    Storer m_storer;
    Scaler m_scaler;
    Loader m_loader;
};
