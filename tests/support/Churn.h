#pragma once

#include <random>

#include <sonvex/sonvex.h>

namespace support {

/// Changes at random, the same on every run, what a host can change of an analysis while it measures.
class Churn {
public:
    enum class Values {
        Any,       ///< those too that silence an analysis
        Delivering ///< with which each goes on
    };

    /// @param removes whether analyses go and come back too
    explicit Churn(Values values, bool removes = true) : any(values == Values::Any), removes(removes) {}

    /// Changes one thing of an analysis.
    void change(sonvex::iprocess::ISampleProcessorConfigBase &config, sonvex::IProcessConfiguration &process,
                sonvex::ihandles::IProcessorHandle &handle);

    unsigned below(std::size_t limit) { return static_cast<unsigned>(random() % limit); }

private:
    void changeConfiguration(sonvex::iprocess::ISampleProcessorConfigBase &config);

    const bool any;
    const bool removes;
    std::mt19937 random{20240611}; // NOLINT(cert-msc51-cpp)
};

} // namespace support
