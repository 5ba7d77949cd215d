#include "PlainReception.h"

#include <utility>

PlainRing::PlainRing(std::string name, const sonvex::IBufferConfiguration &configuration)
    : name(std::move(name)), configuration(configuration), cells(configuration.getBufferSize()) {}

void PlainRing::writeSamples(const float *values, std::size_t amount) {
    const std::lock_guard<std::mutex> lock(mutex);
    for (std::size_t i = 0; i < amount; ++i) {
        if (position == cells.size()) {
            position = 0;
        }
        cells[position++] = values[i];
        ++sinceSignal;
        if (configuration.isClockSignalingActive() && sinceSignal == configuration.getClockSignalingSampleAmount()) {
            signaledPosition = position;
            signal(name, sinceSignal);
            sinceSignal = 0;
        }
    }
}

void PlainRing::signal(const std::string & /*name*/, std::size_t /*amount*/) {}

float convertPlainly(const std::uint8_t *bytes, unsigned size) {
    std::uint32_t code = 0;
    for (unsigned i = 0; i < size; ++i) {
        code |= std::uint32_t{bytes[i]} << (24 - 8 * i);
    }
    return static_cast<float>(static_cast<std::int32_t>(code)) * (1.0F / 2147483648.0F);
}
