#include "script/stage.h"

#include <fmt/format.h>

Stage::Stage(StreamFacts stream, std::size_t values, ScriptHost host)
    : m_stream(std::move(stream)), m_host(std::move(host)), m_values(values),
      m_pictures(m_host.openPicture, m_host.warn) {}

Scene Stage::begin(ZRDraw& draw, const PictureView& picture, const FrameFacts& frame) {
    Scene scene{draw, picture, frame, Place(picture.width, picture.height), m_values, m_pictures};
    scene.value(Constant::Width) = picture.width;
    scene.value(Constant::Height) = picture.height;
    scene.value(Constant::Number) = static_cast<double>(frame.number);
    scene.value(Constant::Time) = frame.time;
    scene.value(Constant::Rate) = m_stream.framesPerSecond;
    scene.value(Constant::SampleAspect) = m_stream.sampleAspect;
    scene.value(Constant::TextWidth) = 0;
    for (std::size_t channel = 0; channel < mostMeters; ++channel)
        m_values[firstPeak + channel] = levelPart(frame.levels[channel]);
    return scene;
}

std::optional<std::string> Stage::perform(Scene& scene, const Operation& operation,
                                          Arguments& arguments) {
    scene.place.apply(operation, arguments);
    if (operation.fault != nullptr)
        if (std::string fault = operation.fault(arguments); !fault.empty())
            return fault;
    return performReady(scene, operation, arguments);
}

std::optional<std::string> Stage::performReady(Scene& scene, const Operation& operation,
                                               const Arguments& arguments) {
    if (operation.run(scene, arguments) != -1)
        return std::nullopt;
    if (!operation.refusal.empty())
        return std::string(operation.refusal);
    return fmt::format("it does not lie wholly on the {}x{} canvas", scene.picture.width,
                       scene.picture.height);
}

void Stage::warnOnce(const std::string& place, const std::string& kind,
                     const std::string& message) {
    constexpr std::size_t most = 1000; // programs may make up places
    if (m_told.size() < most && m_told.emplace(place, kind).second)
        m_host.warn(fmt::format("{}: {}", place, message));
}
