// The converter between planar formats of any depth, by zimg.
#pragma once

#include "picture/picture_converter.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

struct zimg_filter_graph;

// Whether it converts such planes at all.
bool isPlanar(AVPixelFormat format);

class ZimgConverter : public PictureConverter {
public:
    // Null where it knows one of the kinds or the size not.
    static std::unique_ptr<ZimgConverter> make(const PictureKind& from, const PictureKind& to,
                                               int width, int height);
    ~ZimgConverter() override;
    void convert(const AVFrame& from, AVFrame& to) override;

private:
    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };
    struct GraphFree {
        void operator()(zimg_filter_graph* graph) const;
    };
    using GraphPtr = std::unique_ptr<zimg_filter_graph, GraphFree>;

    ZimgConverter(const PictureKind& from, const PictureKind& to, int width);
    void addGraph(GraphPtr graph, int field);
    const AVFrame& aligned(const AVFrame& picture);
    void convertAlpha(const AVFrame& from, AVFrame& to);

    PictureKind m_from, m_to;
    int m_width;
    bool m_fields;
    GraphPtr m_graphs[2]; // of the picture, or of each field
    std::unique_ptr<void, Free> m_room[2];
    std::vector<std::uint16_t> m_line;   // of alpha
    FramePtr m_alignedFrom, m_alignedTo; // made when first wanted
};
