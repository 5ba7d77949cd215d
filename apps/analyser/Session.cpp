#include "analyser/Session.h"

#include <QCoreApplication>

#include <sonvex/sonvex.h>

#include "analyser/AdapterProbe.h"
#include "analyser/LogObserver.h"
#include "common/Refusal.h"
#include "common/rawSocketRemedy.h"

namespace analyser {

namespace {

sonvex::INetworkDeviceInfo &findAdapter(const std::string &name) {
    auto &manager = sonvex::INetworkDeviceManager::createInstance();
    std::string known;
    for (unsigned i = 1; i <= manager.getDeviceCount(); ++i) {
        auto &candidate = manager.getDeviceInfo(i);
        if (candidate.getSystemDeviceName() == name) {
            return candidate;
        }
        known += (known.empty() ? "" : ", ") + candidate.getSystemDeviceName();
    }
    throw common::Refusal("there is no adapter '" + name + "'; known are: " + (known.empty() ? "none" : known));
}

/// Why the adapter can't be opened and what helps, as far as the system says it.
std::string openRefusal(const std::string &device, const std::string &libraryText) {
    const std::string cause = LogObserver::shared().facts().openError;
    const auto contains = [&](const char *part) { return cause.find(part) != std::string::npos; };
    std::string remedy;
    if (contains("ermission") || contains("not permitted")) {
        remedy = common::rawSocketRemedy;
    } else if (AdapterProbe(device).state() == AdapterState::down) {
        remedy = "; the adapter is down: 'sudo ip link set " + device + " up' brings it up";
    }
    return "cannot open the adapter '" + device + "': " + (cause.empty() ? libraryText : cause) + remedy;
}

} // namespace

Session::Session(const MonitorOptions &options) : options(options), adapter(findAdapter(options.device)) {}

Session::~Session() {
    end();
}

void Session::open() {
    ISonvex::createInstance().setMessageReceiver([this](const auto &message) { receiveMessage(message); });
    for (const auto &stream : options.streams) {
        addStream(stream);
    }
    for (const auto &analysis : options.analyses) {
        switch (analysis.kind) {
        case AnalysisKind::waveform:
            addWaveform(analysis);
            break;
        case AnalysisKind::spectrum:
            addSpectrum(analysis);
            break;
        case AnalysisKind::levels:
            addLevels(analysis);
            break;
        }
    }
}

void Session::addStream(const StreamOptions &stream) {
    unsigned clockSamples = 0;
    for (const auto &analysis : options.analyses) {
        // All external clocks are the same one.
        clockSamples = analysis.clock.internal ? clockSamples : analysis.clock.period;
    }
    auto &buffer = sonvex::IBufferConfiguration::createInstance(stream.mac, options.bufferSize, clockSamples);
    constexpr unsigned sampleSize = 2; // bytes
    auto &device = sonvex::IDeviceConfiguration::createInstance(stream.mac, buffer, sampleSize, stream.channels,
                                                                stream.samplesPerChannel);
    auto &configuration = sonvex::IStreamConfiguration::createInstance(stream.mac, stream.mac, adapter, device);
    try {
        capture = &ISonvex::createInstance().addRemoteStreamReceiver(configuration);
    } catch (const exceptions::InstanceNotCreateable &error) {
        throw common::Refusal(openRefusal(options.device, error.what()), common::Refusal::failure);
    }
}

void Session::addWaveform(const AnalysisOptions &waveform) {
    using Config = sonvex::iprocess::IWaveformConfig;
    addAnalysis(waveform.clock.internal
                    ? Config::createInstance(waveform.type(), waveform.amount, waveform.clock.period)
                    : Config::createInstance(waveform.type(), waveform.amount),
                waveform);
}

void Session::addSpectrum(const AnalysisOptions &spectrum) {
    using Config = sonvex::iprocess::ISpectrumConfig;
    auto &config = spectrum.clock.internal
                       ? Config::createInstance(spectrum.type(), spectrum.amount, spectrum.clock.period)
                       : Config::createInstance(spectrum.type(), spectrum.amount);
    config.setFftOrder(spectrum.order);
    addAnalysis(config, spectrum);
    // A new processor starts with the window's size; set afterwards, a length counts too.
    if (spectrum.averaging) {
        if (spectrum.averaging->inCycles) {
            config.setMovingAverageWindowSize(spectrum.averaging->window);
        } else {
            config.setMovingAverageWindowLength(spectrum.averaging->window);
        }
        config.setMovingAverageActive(true);
    }
}

void Session::addLevels(const AnalysisOptions &levels) {
    addAnalysis(sonvex::iprocess::ISoundLevelValueConfig::createInstance(levels.type(), levels.amount), levels);
}

void Session::addAnalysis(sonvex::iprocess::IProcessorConfigBase &config, const AnalysisOptions &settings) {
    Analysis analysis;
    analysis.options = settings;
    analysis.name = settings.type() + '_' + settings.mac + "_ch" + std::to_string(settings.channel);

    auto &library = ISonvex::createInstance();
    auto &handle = library.addProcessor(sonvex::IProcessConfiguration::createInstance(
        analysis.name, config, settings.mac, static_cast<unsigned char>(settings.channel)));
    library.getMeteringDataSource(handle).bindChannelCallback(
        [this, index = all.size()](sonvex::IChannelData &data) { receiveResult(index, data); });
    processors.push_back(&handle);
    all.push_back(std::move(analysis));
}

void Session::start() {
    startTime = Clock::now();
    for (auto &analysis : all) {
        analysis.lastSign = *startTime;
    }
    for (auto *processor : processors) {
        processor->start();
    }
    capture->start();
}

void Session::end() {
    if (ended) {
        return;
    }
    ended = true;
    endTime = Clock::now();
    if (startTime) {
        capture->stop();
        for (auto *processor : processors) {
            processor->stop();
        }
    }
    // No calculation is left after it, so what is on its way then has been posted.
    ISonvex::destroy();
    QCoreApplication::sendPostedEvents();
    ISonvex::createInstance().setMessageReceiver({});
}

std::optional<int> Session::declaredChannels(const std::string &stream) const {
    const auto found = declared.find(stream);
    return found == declared.end() ? std::nullopt : std::optional(found->second);
}

double Session::seconds() const {
    return startTime ? std::chrono::duration<double>(endTime.value_or(Clock::now()) - *startTime).count() : 0.0;
}

void Session::receiveResult(std::size_t index, sonvex::IChannelData &data) {
    auto &analysis = all[index];
    analysis.lastSign = Clock::now();
    const auto sequence = analysis.results++;
    if (resultReceiver) {
        resultReceiver({analysis, sequence, data.getVectorData()});
    }
}

void Session::receiveMessage(const std::shared_ptr<sonvex::imessages::IBaseMessage> &message) {
    ++messageAmount;
    if (const auto *change = dynamic_cast<const sonvex::imessages::IChannelAmountChanged *>(message.get())) {
        declared[change->getMessageId()] = change->getChannelAmountAfter();
    }
    if (messageReceiver) {
        messageReceiver(*message);
    }
}

} // namespace analyser
