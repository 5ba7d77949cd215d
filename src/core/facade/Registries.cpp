#include "core/facade/Registries.h"

#include "core/logging/Log.h"

void Registries::clear() {
    const auto step = [](const char *line, auto &registry) {
        logging::debug("ISonvex::destroy", line);
        registry.clear();
    };
    step("Deleting stream configurations...", streams);
    step("Deleting processor configurations...", processes);
    step("Deleting device configurations...", devices);
    step("Deleting spectrum processor configurations...", spectra);
    step("Deleting waveform processor configurations...", waveforms);
    step("Deleting sound level value processor configurations...", soundLevelValues);
    step("Deleting buffer configurations...", buffers);
}
