// The pictures that a script puts on frames, opened once and kept ready.
#pragma once

#include "common/picture_view.h"
#include "script/pictures/picture_layer.h"
#include "script/pictures/pictures.h"
#include "zrdraw/zrdraw.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <tuple>

class PictureShelf {
public:
    // A file, and the time at which a clip begins.
    struct Wish {
        std::string file;
        double since = 0;
        bool operator<(const Wish& other) const {
            return std::tie(file, since) < std::tie(other.file, other.since);
        }
    };
    struct Box {
        int x, y, width, height;
    };

    using Warn = std::function<void(const std::string& message)>;
    PictureShelf(PictureOpener open, Warn warn)
        : m_open(std::move(open)), m_warn(std::move(warn)) {}

    // Called around each picture that is put on a frame, by who needs it.
    std::function<void()> before = {};
    std::function<void()> after = {};
    // Of the frames, said by the same.
    FrameAlpha alpha = FrameAlpha::Counts;

    // Opens a file before it is needed. A Failure if it cannot be read.
    const ScriptPicture& open(const std::string& file);

    // What is to be seen at a time. A Failure if it cannot be read.
    std::shared_ptr<const ScriptPicture> picture(const Wish& wish, double time);

    void put(ZRDraw& draw, const PictureView& frame, const Wish& wish,
             const std::shared_ptr<const ScriptPicture>& picture, const Box& box, double opacity);

    // Forgets what was made ready for other frames than the last.
    void endFrame();

private:
    struct Clip {
        std::unique_ptr<PictureClip> pictures;
        bool used = true;
    };
    // A picture in one size, made ready for each place that it has had among the pixels that a
    // layout keeps together.
    struct Layers {
        std::shared_ptr<const ScriptPicture> source, scaled;
        std::map<int, PictureLayer> byPhase;
        bool used = true;
    };
    using LayersKey = std::tuple<Wish, int, int>;

    void makeRoom(const std::string& file);
    void tellOfAlpha(const zrLayout& layout, const Wish& wish,
                     const std::shared_ptr<const ScriptPicture>& picture, double opacity);

    PictureOpener m_open;
    Warn m_warn;
    bool m_toldOfAlpha = false;
    std::shared_ptr<const ScriptPicture> m_opaque;                // looked at last
    std::map<std::string, std::unique_ptr<PictureClip>> m_opened; // and not used yet
    std::map<Wish, Clip> m_clips;
    std::map<LayersKey, Layers> m_layers;
};
