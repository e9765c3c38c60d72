#include "peers.h"

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

Job drawLabel(Frame& frame, _POINT bottomLeft, const char* text, int scale) {
    return repeated([matrix = matrixOn(frame), at = cv::Point(bottomLeft.x, bottomLeft.y),
                     string = std::string(text), scale]() mutable {
        cv::putText(matrix, string, at, cv::FONT_HERSHEY_PLAIN, scale, color);
    });
}

const AddPeer opencv(DrawPeer{"cv::line", "cv::line AA", "cv::putText", drawLine, drawLabel});

} // namespace
