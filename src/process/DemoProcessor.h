#pragma once

#include <vector>

#include "process/Processor.h"

namespace sonvex::iprocess {
class IDemoConfig;
} // namespace sonvex::iprocess

namespace process {

class DemoConfig;
class ProcessorConfigBase;

/**
 * A test signal: a sine in steps of 0.1 radian, delivered point by point every 60 ms.
 * It computes in progress() for as long as it is active, so start() has to come before a controller takes it.
 */
class DemoProcessor : public Processor {
    Q_OBJECT

public:
    /// @param config not owned; has to outlive the processor
    DemoProcessor(const std::string &name, DemoConfig &config, QObject *parent);

    /// Owned by the caller. @throws exceptions::InstanceNotConvertable
    static Processor *createInstance(const std::string &name, ProcessorConfigBase &config);

    std::string toString() const override;

public Q_SLOTS:
    void progress() override;

private:
    void generateSample();

    sonvex::iprocess::IDemoConfig *config;
    std::vector<double> xValues;
    std::vector<double> yValues;
    double phase = 0.0;
    double lastValue = 0.0;
    unsigned int pointsInFrame = 0;
};

} // namespace process
