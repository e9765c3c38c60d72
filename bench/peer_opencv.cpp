#include "peers.h"

#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>

namespace {

const cv::Scalar color(51, 102, 153, 255);

cv::Mat matrixOn(Frame& frame) {
    return {frameHeight, frameWidth, CV_8UC4, frame.bytes(), framePitch};
}

Job drawLine(Frame& frame, _POINT from, _POINT to, bool smooth) {
    const int type = smooth ? cv::LINE_AA : cv::LINE_8;
    return repeated([matrix = matrixOn(frame), p = cv::Point(from.x, from.y),
                     q = cv::Point(to.x, to.y),
                     type]() mutable { cv::line(matrix, p, q, color, 1, type); });
}

Job drawLabel(Frame& frame, _POINT bottomLeft, const char* text, int scale, int stroke) {
    return repeated([matrix = matrixOn(frame), at = cv::Point(bottomLeft.x, bottomLeft.y),
                     string = std::string(text), scale, stroke]() mutable {
        cv::putText(matrix, string, at, cv::FONT_HERSHEY_PLAIN, scale, color, stroke);
    });
}

Job drawCircle(Frame& frame, _POINT centre, int radius, Ink ink) {
    const int thickness = ink == Ink::Filled ? cv::FILLED : 1;
    return repeated([matrix = matrixOn(frame), at = cv::Point(centre.x, centre.y), radius,
                     thickness]() mutable { cv::circle(matrix, at, radius, color, thickness); });
}

Job drawEllipse(Frame& frame, _POINT centre, int rx, int ry) {
    return repeated(
        [matrix = matrixOn(frame), at = cv::Point(centre.x, centre.y),
         axes = cv::Size(rx, ry)]() mutable { cv::ellipse(matrix, at, axes, 0, 0, 360, color); });
}

Job fillRectangle(Frame& frame, const RECT& rect) {
    return repeated([matrix = matrixOn(frame), from = cv::Point(rect.left, rect.top),
                     to = cv::Point(rect.right, rect.bottom)]() mutable {
        cv::rectangle(matrix, from, to, color, cv::FILLED);
    });
}

// Whole words, as it serves no pixels of four channels.
Job floodFrame(Frame& frame, _POINT seed) {
    return repeated([words = cv::Mat(frameHeight, frameWidth, CV_32SC1, frame.bytes(), framePitch),
                     at = cv::Point(seed.x, seed.y), word = 1]() mutable {
        cv::floodFill(words, at, cv::Scalar(word));
        word = 3 - word;
    });
}

Job mix(unsigned char* to, unsigned char* a, unsigned char* b, int width, int height,
        double weight) {
    return repeated(
        [first = cv::Mat(height, width, CV_8UC4, a), second = cv::Mat(height, width, CV_8UC4, b),
         result = cv::Mat(height, width, CV_8UC4, to),
         weight]() mutable { cv::addWeighted(second, weight, first, 1.0 - weight, 0.0, result); });
}

const AddPeer mixing(MixPeer{"cv::addWeighted", true, mix});
const AddPeer drawing(DrawPeer{"cv::line", "cv::line AA", "cv::putText", drawLine, drawLabel});
const AddPeer areas(AreaPeer{"cv::circle", "cv::ellipse", "cv::rectangle", "cv::floodFill",
                             drawCircle, drawEllipse, fillRectangle, floodFrame});

} // namespace
