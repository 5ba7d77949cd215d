// A plug-in that uses the library: it comes with the library and takes it away again.
#include <memory>

#include "live/hosts/HostRun.h"

namespace {

std::unique_ptr<hosts::HostRun> run;

} // namespace

extern "C" {

SONVEX_PLUGIN_EXPORT void pluginBegin() {
    run = std::make_unique<hosts::HostRun>();
}

SONVEX_PLUGIN_EXPORT bool pluginHasResults() {
    return run->isComplete();
}

SONVEX_PLUGIN_EXPORT void pluginRemove() {
    run->removeAll();
}

SONVEX_PLUGIN_EXPORT void pluginDestroy() {
    ISonvex::destroy();
}
}
