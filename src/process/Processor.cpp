#include "process/Processor.h"

#include "core/logging/Log.h"

namespace process {

Processor::Processor(const std::string &name, QObject *parent) : Worker(name, parent) {
    logging::debug("process::Processor::Processor", getName(), " Processor CREATED");
}

void Processor::start() {
    const bool wasActive = processingActive.exchange(true);
    logging::debug("process::Processor::start", getName(),
                   wasActive ? " Processing already started! No action will be performed!" : " Processing started");
}

void Processor::stop() {
    const bool wasActive = processingActive.exchange(false);
    logging::debug("process::Processor::stop", getName(),
                   wasActive ? " Processing stopped" : " Processing not active! No action will be performed!");
}

bool Processor::isProcessingActive() const {
    return processingActive;
}

std::string Processor::toString() const {
    return "Processor: " + getName() + "\n\tProcessor active (calculating?): " + (isProcessingActive() ? "1" : "0");
}

void Processor::retire() {}

void Processor::end() {
    logging::debug("process::Processor::end", getName(), " End called!");
    stop();
    retire();
}

} // namespace process
