// A script with all that belongs to it, on the frames of one stream.
#pragma once

#include "script/language/parser.h"
#include "script/lua/lua_program.h"
#include "script/runner.h"

#include <memory>
#include <string>

// What is to be played, read and found sound before any stream is known.
struct ScriptSource {
    Script script;
    std::unique_ptr<LuaProgram> program; // comes behind the list; may be null

    // Whether it asks how loud the sound is; a program may.
    bool wantsLevels() const { return script.usesPeaks || program; }
};

class ScriptPlayer {
public:
    // Opens pictures and sets the program up: what is wrong is a ToolError.
    ScriptPlayer(ScriptSource source, StreamFacts stream, ScriptHost host);

    // As they become known while the stream runs.
    void setTags(const std::map<std::string, std::string>& tags);
    void setSoundChannels(unsigned channels);

    PictureShelf& pictures() { return m_stage.pictures(); }

    // The object is to be a new one, so that no colour or position passes from one frame to the
    // next. A ToolError names the frame.
    void play(ZRDraw& draw, const PictureView& picture, const FrameFacts& frame);

private:
    ScriptSource m_source;
    Stage m_stage;
    ScriptRunner m_runner;
};

// Runs a list on one picture that is no stream's. Answers what there was to warn of.
std::vector<std::string> drawOnce(Script script, ZRDraw& draw, const PictureView& picture,
                                  PictureOpener open = {});
