#include "process/DemoProcessor.h"

#include <chrono>
#include <cmath>
#include <thread>

#include "core/logging/Log.h"
#include "process/configuration/DemoConfig.h"

namespace process {

namespace {

constexpr double phaseStep = 0.1; // radian
constexpr unsigned int frameSize = 1;
constexpr std::chrono::milliseconds framePeriod{60};

} // namespace

DemoProcessor::DemoProcessor(const std::string &name, DemoConfig &config, QObject *parent)
    : Processor("DemoProcessor (SinGen) - " + name, parent), config(&config) {}

Processor *DemoProcessor::createInstance(const std::string &name, ProcessorConfigBase &config) {
    return new DemoProcessor(name, DemoConfig::convert(config), nullptr);
}

std::string DemoProcessor::toString() const {
    return Processor::toString() + "\n" + config->toString();
}

void DemoProcessor::progress() {
    static constexpr char context[] = "process::DemoProcessor::progress";
    logging::debug(context, getName(), " Processor ACTIVE");
    while (isProcessingActive()) {
        generateSample();
    }
    logging::debug(context, getName(), "Processor FINISHED");
    Q_EMIT finished();
}

void DemoProcessor::generateSample() {
    const double amplitude = config->getAmplitude();
    lastValue = amplitude * std::sin(phase);
    phase += phaseStep;
    xValues.push_back(phase);
    yValues.push_back(lastValue);
    if (++pointsInFrame < frameSize) {
        return;
    }
    Q_EMIT newProcessData(sonvex::ChannelData(getName(), sonvex::VectorData(xValues, yValues)));
    pointsInFrame = 0;
    xValues.clear();
    yValues.clear();
    std::this_thread::sleep_for(framePeriod);
}

} // namespace process
