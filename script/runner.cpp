#include "script/runner.h"

#include "common/time_code_text.h"
#include "common/tool_error.h"
#include "script/language/statement_reader.h"
#include "zrdraw/zrhost.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

using Flow = Operation::Flow;
using Kind = Parameter::Kind;

namespace {

// Of a count that may have passed midnight.
unsigned sinceMidnight(unsigned frames, unsigned type) {
    unsigned result = 0;
    zrTimeCodeFrames(timeCodeText(frames, type).c_str(), type, &result);
    return result;
}

[[noreturn]] void failInFrame(const Scene& scene, const Command& command, Position position,
                              const std::string& message) {
    failAt(*command.source, position,
           fmt::format("{}: {} in frame {}", command.operation->name, message, scene.frame.number));
}

} // namespace

ScriptRunner::ScriptRunner(const Script& script, Stage& stage) : m_script(script), m_stage(stage) {
    m_ready.reserve(script.commands.size());
    for (std::size_t i = 0; i < script.commands.size(); ++i)
        prepare(i);
    m_scratch = m_ready;
}

void ScriptRunner::prepare(std::size_t i) {
    const Command& command = m_script.commands[i];
    m_ready.push_back(command.arguments);
    Place(m_stage.stream().width, m_stage.stream().height)
        .apply(*command.operation, m_ready.back());
    const auto& parameters = command.operation->parameters;
    const auto has = [&](Kind kind) {
        return std::any_of(parameters.begin(), parameters.end(),
                           [kind](const Parameter& parameter) { return parameter.kind == kind; });
    };
    if (has(Kind::TimeCode))
        m_ranges[i] = rangeOf(command, m_stage.stream().timeCodeType);
    if (has(Kind::File))
        openPicture(command);
}

ScriptRunner::Range ScriptRunner::rangeOf(const Command& command, unsigned type) const {
    return {type, timeCodeOf(command, 0, type), timeCodeOf(command, 2, type)};
}

unsigned ScriptRunner::timeCodeOf(const Command& command, std::size_t argument,
                                  unsigned type) const {
    const std::string& text = command.arguments.text(argument);
    unsigned frames = 0;
    if (zrTimeCodeFrames(text.c_str(), type, &frames) != 0)
        failAt(*command.source, command.places[argument],
               fmt::format("{}: the time code {} cannot be at {:.6g} frames a second{}",
                           command.operation->name, text, m_stage.stream().framesPerSecond,
                           zrTimeCodeIsDrop(type) != 0 ? " drop-frame" : ""));
    return frames;
}

// Before anything is drawn, so that a file that is missing is told at once.
void ScriptRunner::openPicture(const Command& command) {
    const auto& parameters = command.operation->parameters;
    for (std::size_t i = 0; i < parameters.size(); ++i)
        try {
            if (parameters[i].kind == Kind::File)
                m_stage.pictures().open(command.arguments.text(i));
        } catch (const Failure& error) {
            throw Failure(fmt::format("{}: {}", command.placeOf(command.places[i]), error.what()));
        }
}

void ScriptRunner::run(Scene& scene) {
    const std::vector<Command>& commands = m_script.commands;
    for (std::size_t i = 0; i < commands.size(); ++i)
        switch (commands[i].operation->flow) {
        case Flow::None:
            draw(scene, i);
            break;
        case Flow::Let:
            scene.values[commands[i].variable] = valueOf(scene, commands[i], 2);
            break;
        case Flow::Open:
            if (!holds(scene, i))
                i = commands[i].end;
            break;
        case Flow::Close:
            break;
        }
}

// Frames may have a time code that counts otherwise than their stream.
bool ScriptRunner::holds(const Scene& scene, std::size_t i) {
    const Command& command = m_script.commands[i];
    const auto found = m_ranges.find(i);
    if (found == m_ranges.end())
        return valueOf(scene, command, 0) != 0;
    Range& range = found->second;
    if (range.type != scene.frame.timeCodeType)
        range = rangeOf(command, scene.frame.timeCodeType);
    const auto [type, first, end] = range;
    const unsigned now = sinceMidnight(scene.frame.timeCode, scene.frame.timeCodeType);
    const bool passesMidnight = end < first;
    return passesMidnight ? now >= first || now < end : now >= first && now < end;
}

void ScriptRunner::draw(Scene& scene, std::size_t i) {
    const Command& command = m_script.commands[i];
    std::optional<std::string> refusal;
    if (!command.isLive() && scene.place.isPlain()) {
        refusal = Stage::performReady(scene, *command.operation, m_ready[i]);
    } else {
        Arguments& arguments = m_scratch[i];
        arguments = command.arguments;
        fill(scene, command, arguments);
        refusal = Stage::perform(scene, *command.operation, arguments);
    }
    if (refusal && m_told.insert(&command).second)
        m_stage.warn(fmt::format("{}: {} was refused: {}", command.place(), command.operation->name,
                                 *refusal));
}

void ScriptRunner::fill(const Scene& scene, const Command& command, Arguments& arguments) {
    for (const LiveNumber& number : command.numbers) {
        const double value = hold(scene, command, number, evaluate(scene, command, number));
        Argument& argument = arguments.at(number.argument);
        if (command.operation->parameters[number.argument].kind == Kind::Points)
            argument.coordinates[number.coordinate] = value;
        else
            argument.number = value;
    }
    for (const LiveText& live : command.texts)
        try {
            live.text->write(m_stage.textFacts(scene.frame), arguments.at(live.argument).text);
        } catch (const PartError& error) {
            failInFrame(scene, command, live.word.positionOf(error.offset), error.message);
        }
}

double ScriptRunner::valueOf(const Scene& scene, const Command& command, std::size_t argument) {
    for (const LiveNumber& number : command.numbers)
        if (number.argument == argument)
            return evaluate(scene, command, number);
    return command.arguments.number(argument);
}

double ScriptRunner::evaluate(const Scene& scene, const Command& command,
                              const LiveNumber& number) const {
    const double value = number.expression->evaluate(scene.values);
    if (!std::isfinite(value))
        failInFrame(scene, command, number.position, fmt::format("{} is no number", number.name));
    return value;
}

// A script that has run for hours goes on where a number leaves its range.
double ScriptRunner::hold(const Scene& scene, const Command& command, const LiveNumber& number,
                          double value) {
    const Parameter& parameter = command.operation->parameters[number.argument];
    const double held = std::clamp(value, parameter.low, parameter.high);
    if (held != value && m_told.insert(&number).second)
        m_stage.warn(
            fmt::format("{}: {}: expected {} for {}, got {:g} in frame {}: it is held at {:g}",
                        command.placeOf(number.position), command.operation->name,
                        expectation(parameter), number.name, value, scene.frame.number, held));
    return held;
}
