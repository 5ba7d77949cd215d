#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "core/configuration/BufferConfiguration.h"
#include "core/configuration/DeviceConfiguration.h"
#include "core/configuration/ProcessConfiguration.h"
#include "core/configuration/StreamConfiguration.h"
#include "process/configuration/SoundLevelValueConfig.h"
#include "process/configuration/SpectrumConfig.h"
#include "process/configuration/WaveformConfig.h"

/// Every configuration object that the exported factories made, until ISonvex::destroy. Host's thread only.
struct Registries {
    template <class Configuration>
    using Registry = std::vector<std::unique_ptr<Configuration>>;

    /// Makes an object and keeps it in @p registry.
    template <class Configuration, class... Arguments>
    static Configuration &create(Registry<Configuration> &registry, Arguments &&...arguments) {
        registry.push_back(std::make_unique<Configuration>(std::forward<Arguments>(arguments)...));
        return *registry.back();
    }

    /// Deletes them all, users before what they use, and logs each step of ISonvex::destroy. At an unload without it
    /// the order does not count: no destructor looks at another configuration.
    void clear();

    Registry<sonvex::StreamConfiguration> streams;
    Registry<sonvex::ProcessConfiguration> processes;
    Registry<sonvex::DeviceConfiguration> devices;
    Registry<process::SpectrumConfig> spectra;
    Registry<process::WaveformConfig> waveforms;
    Registry<process::SoundLevelValueConfig> soundLevelValues;
    Registry<sonvex::BufferConfiguration> buffers;
};
