#include "common/wipe_names.h"

#include "common/near_names.h"
#include "common/numbers.h"
#include "common/tool_error.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

std::vector<zrWipe> namedWipes() {
    std::vector<zrWipe> named;
    std::copy_if(std::begin(zrWipes), std::end(zrWipes), std::back_inserter(named),
                 [](const zrWipe& wipe) { return wipe.name != nullptr; });
    return named;
}

unsigned wipeCodeOf(const std::string& text) {
    std::vector<std::string> candidates;
    for (const zrWipe& wipe : namedWipes()) {
        if (text == wipe.name)
            return wipe.first;
        candidates.emplace_back(wipe.name);
    }
    const auto code = numberIn<unsigned>(text);
    if (code && *code < zrWipeSwap)
        return *code;
    throw UsageError(fmt::format("there is no transition '{}'{} (zrdraw wipe --list shows all)",
                                 text, nearNames(text, candidates)));
}

std::string listWipes() {
    std::string text = fmt::format("{:>5}  {:<22} {}\n", "CODE", "NAME", "WHAT IT DOES");
    for (const zrWipe& wipe : namedWipes())
        text += fmt::format("{:>5}  {:<22} {}\n", wipe.first, wipe.name, wipe.help);
    return text;
}
