#include "script/player.h"

#include "zrdraw/zrhost.h"

ScriptPlayer::ScriptPlayer(ScriptSource source, StreamFacts stream, ScriptHost host)
    : m_source(std::move(source)),
      m_stage(std::move(stream), m_source.script.names.size(), std::move(host)),
      m_runner(m_source.script, m_stage) {
    if (m_source.program)
        m_source.program->setUp(m_stage);
}

void ScriptPlayer::setTags(const std::map<std::string, std::string>& tags) {
    m_stage.setTags(tags);
    if (m_source.program)
        m_source.program->showStream();
}

void ScriptPlayer::setSoundChannels(unsigned channels) {
    m_stage.setSoundChannels(channels);
}

void ScriptPlayer::play(ZRDraw& draw, const PictureView& picture, const FrameFacts& frame) {
    Scene scene = m_stage.begin(draw, picture, frame);
    m_runner.run(scene);
    if (m_source.program)
        m_source.program->frame(scene);
    m_stage.end();
}

std::vector<std::string> drawOnce(Script script, ZRDraw& draw, const PictureView& picture,
                                  PictureOpener open) {
    std::vector<std::string> warnings;
    StreamFacts stream{picture.width, picture.height};
    FrameFacts frame;
    stream.timeCodeType = frame.timeCodeType = zrTimeCode25;
    ScriptPlayer player(
        {std::move(script), nullptr}, stream,
        {[&](const std::string& message) { warnings.push_back(message); }, std::move(open)});
    player.play(draw, picture, frame);
    return warnings;
}
