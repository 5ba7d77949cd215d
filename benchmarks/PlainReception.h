#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <sonvex/IBufferConfiguration.h>

/// A channel's ring as one would first write it: a call and a lock for each sample.
class PlainRing {
public:
    PlainRing(std::string name, const sonvex::IBufferConfiguration &configuration);
    virtual ~PlainRing() = default;

    void writeSample(const float &sample) { writeSamples(&sample, 1); }
    virtual void signal(const std::string &name, std::size_t amount);

private:
    void writeSamples(const float *values, std::size_t amount);

    std::string name;
    const sonvex::IBufferConfiguration &configuration;
    std::vector<float> cells;
    std::size_t position = 0;
    std::size_t signaledPosition = 0;
    std::uint32_t sinceSignal = 0;
    std::mutex mutex;
};

/// The scale and the byte order of one sample, behind a call of its own.
float convertPlainly(const std::uint8_t *bytes, unsigned size);
