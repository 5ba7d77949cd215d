#include "analyser/Refusal.h"

#include <cstdio>

#include "analyser/Text.h"

namespace analyser {

Refusal::Refusal(int newExitStatus, const std::string &line) : std::runtime_error(line), status(newExitStatus) {}

void complain(const std::string &line) {
    const std::string text = "sonvex-analyser: " + text::oneLine(line) + '\n';
    (void)std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace analyser
