#include "monitoring/analyses/Spectrum.h"

#include <limits>
#include <utility>

#include <sonvex/ISpectrumConfig.h>

#include "common/Text.h"
#include "common/parseNumber.h"
#include "monitoring/meters/SpectrumMeter.h"

namespace monitoring {

namespace {

constexpr unsigned minimumOrder = 2; // two samples have no window, and nothing but their mean to show
constexpr unsigned maximumOrder = 24;
constexpr unsigned maximumMilliseconds = std::numeric_limits<int>::max();
constexpr unsigned maximumCycles = 10000;

/// Whole ones, as the library counts them.
unsigned cycleMilliseconds(const ClockSettings &clock, unsigned sampleRate) {
    return static_cast<unsigned>(clock.seconds(sampleRate) * 1000.0);
}

Spectrum::Averaging parseAveraging(const AnalysisValue &value, unsigned sampleRate, const std::string &unit,
                                   const std::string &number) {
    if (unit == "average=cycles") {
        return {true, common::parseNumber<unsigned>(number, value.numberTitle("average=cycles"), 2, maximumCycles)};
    }
    if (unit != "average=ms") {
        value.refuse(": an average is of the form average=cycles:N or average=ms:N");
    }
    const ClockSettings &clock = value.clock();
    if (cycleMilliseconds(clock, sampleRate) == 0) {
        value.refuse(" needs a clock of at least external:" + std::to_string((sampleRate + 999) / 1000));
    }
    const auto window = common::parseNumber<unsigned>(number, value.numberTitle("average=ms"), 1, maximumMilliseconds);
    const Spectrum::Averaging averaging{false, window};
    const unsigned cycles = averaging.cycles(clock, sampleRate);
    if (cycles < 2 || cycles > maximumCycles) {
        value.refuse(": a window has 2 to " + std::to_string(maximumCycles) + " cycles, of " +
                     std::to_string(cycleMilliseconds(clock, sampleRate)) + " ms with this clock");
    }
    return averaging;
}

std::shared_ptr<const Analysis> parse(const AnalysisValue &value) {
    const auto &parts = value.parts({2, 4});
    const auto channel = value.channel();
    const auto order = common::parseNumber<unsigned>(parts[1], value.numberTitle("order"), minimumOrder, maximumOrder);
    std::optional<Spectrum::Averaging> averaging;
    if (parts.size() == 4) {
        averaging = parseAveraging(value, channel.sampleRate, parts[2], parts[3]);
    }
    return std::make_shared<Spectrum>(channel, order, averaging, value.clock());
}

} // namespace

const AnalysisKind Spectrum::description = {"spectrum", "spectra", "CHANNEL:ORDER[:average=cycles:N|ms:N][@STREAM]",
                                            "CHANNEL:ORDER[:average=cycles:N|ms:N][@STREAM]: the power spectrum of "
                                            "2^ORDER samples of a channel, ORDER 2 to 24, "
                                            "through a Hann window; averaged over N results or milliseconds if wanted.",
                                            parse};

unsigned Spectrum::Averaging::cycles(const ClockSettings &clock, unsigned sampleRate) const {
    return inCycles ? window : window / cycleMilliseconds(clock, sampleRate);
}

std::string Spectrum::Averaging::toString() const {
    return (inCycles ? "cycles:" : "ms:") + std::to_string(window);
}

Spectrum::Spectrum(Channel channel, unsigned order, std::optional<Averaging> averaging, ClockSettings clock)
    : Analysis(std::move(channel), 1U << order, clock), fftOrder(order), averaging(averaging) {}

std::string Spectrum::unit() const {
    return "power through a Hann window, 1/3 for a sine of amplitude 1.0 on a bin";
}

std::vector<Analysis::Setting> Spectrum::settings() const {
    return {{"order", "order", std::to_string(fftOrder), true, ""},
            {"binWidth", "bin width", text::number(binWidth()), true, " Hz"},
            {"averaging", "averaging", averaging ? averaging->toString() : "none", false, ""}};
}

std::uint64_t Spectrum::extent() const {
    const unsigned earlier = averaging ? averaging->cycles(clock(), channel().sampleRate) - 1 : 0;
    const double rate = channel().sampleRate;
    return amount() + static_cast<std::uint64_t>(earlier * clock().seconds(channel().sampleRate) * rate);
}

std::string Spectrum::bufferRefusal(unsigned bufferSize) const {
    if (bufferSize >= amount()) {
        return "";
    }
    return "holds no block of the spectrum of order " + std::to_string(fftOrder) + ", which needs " +
           std::to_string(amount()) + " samples";
}

std::vector<std::string> Spectrum::limits(unsigned /*bufferSize*/) const {
    if (clock().internal || clock().period <= amount()) {
        return {};
    }
    return {"spectra of " + std::to_string(amount()) + " samples leave out " +
            std::to_string(clock().period - amount()) + " of each " + std::to_string(clock().period) +
            " samples of the clock"};
}

sonvex::iprocess::IProcessorConfigBase &Spectrum::configure() const {
    using Config = sonvex::iprocess::ISpectrumConfig;
    auto &config = clock().internal ? Config::createInstance(description.name, amount(), clock().period)
                                    : Config::createInstance(description.name, amount());
    config.setFftOrder(fftOrder);
    return config;
}

void Spectrum::configureProcessor(sonvex::iprocess::IProcessorConfigBase &config) const {
    if (!averaging) {
        return;
    }
    // A new processor starts with the window's size; set afterwards, a length counts too.
    auto &spectrum = dynamic_cast<sonvex::iprocess::ISpectrumConfig &>(config);
    // The library takes a length for one at 48 kHz, where an external clock drives it.
    if (averaging->inCycles || channel().sampleRate != usualRate) {
        spectrum.setMovingAverageWindowSize(averaging->cycles(clock(), channel().sampleRate));
    } else {
        spectrum.setMovingAverageWindowLength(averaging->window);
    }
    spectrum.setMovingAverageActive(true);
}

std::unique_ptr<Meter> Spectrum::makeMeter(double window) const {
    return std::make_unique<SpectrumMeter>(binWidth(), resultsIn(window));
}

} // namespace monitoring
