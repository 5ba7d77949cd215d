#include "monitoring/Session.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <QCoreApplication>

#include <sonvex/sonvex.h>

#include "common/Refusal.h"
#include "common/rawSocketRemedy.h"

namespace monitoring {

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
std::string openRefusal(const std::string &device, AdapterLink::State link, const std::string &libraryText) {
    const std::string cause = sonvex::IAdapterFacts::createInstance(device).getStartError();
    const auto contains = [&](const char *part) { return cause.find(part) != std::string::npos; };
    std::string remedy;
    if (contains("ermission") || contains("not permitted")) {
        remedy = common::rawSocketRemedy;
    } else if (link == AdapterLink::State::down) {
        remedy = "; the adapter is down: 'sudo ip link set " + device + " up' brings it up";
    }
    return "cannot open the adapter '" + device + "': " + (cause.empty() ? libraryText : cause) + remedy;
}

/// All external clocks are the same one; 0 without any.
unsigned clockSamples(const Analyses &analyses) {
    unsigned samples = 0;
    for (const auto &analysis : analyses) {
        samples = analysis->clock().internal ? samples : analysis->clock().period;
    }
    return samples;
}

std::uint64_t largestExtent(const Analyses &analyses) {
    std::uint64_t largest = 0;
    for (const auto &analysis : analyses) {
        largest = std::max(largest, analysis->extent());
    }
    return largest;
}

Message decode(const sonvex::imessages::IBaseMessage &message) {
    Message decoded{message.getName(),           message.getMessageId(), message.getMessageType(),
                    message.getMessageDetails(), std::nullopt,           std::nullopt};
    if (const auto *change = dynamic_cast<const sonvex::imessages::IChannelAmountChanged *>(&message)) {
        decoded.change = Message::ChannelAmount{change->getConfiguredChannelAmount(), change->getChannelAmountBefore(),
                                                change->getChannelAmountAfter()};
    }
    if (const auto *status = dynamic_cast<const sonvex::imessages::IStatusMessage *>(&message)) {
        decoded.text = status->getMessage();
    }
    return decoded;
}

StreamStatus statusOf(const std::string &key, const sonvex::IStreamFacts &facts) {
    using sonvex::FrameRefusal;
    StreamStatus status;
    status.key = key;
    status.seen = facts.getCaptureTime() != 0;
    status.declared = {facts.getFormat(), facts.getChannelAmount(), facts.getDataLength(), facts.getSampleRate()};
    status.taken = facts.getFramesTaken();
    status.gaps = facts.getGaps();
    status.lost = facts.getFramesLost();
    status.repeated = facts.getFramesRepeated();
    status.refusedChannelAmount = facts.getFramesRefused(FrameRefusal::ChannelAmount);
    status.refusedDataLength = facts.getFramesRefused(FrameRefusal::DataLength);
    status.refusedIncomplete = facts.getFramesRefused(FrameRefusal::IncompleteHeader) +
                               facts.getFramesRefused(FrameRefusal::IncompleteSamples);
    status.refusedFormat = facts.getFramesRefused(FrameRefusal::Format);
    status.refusedSampleRate = facts.getFramesRefused(FrameRefusal::SampleRate);
    status.nonFiniteSamples = facts.getNonFiniteSamples();
    status.streamId = facts.getStreamId();
    status.vlanId = facts.getVlanId();
    status.vlanPriority = facts.getVlanPriority();
    status.clock = facts.getClock();
    return status;
}

sonvex::SampleFormat formatOf(const common::AafFormat &format) {
    using Format = sonvex::SampleFormat;
    for (const auto &[name, value] : {std::pair("int16", Format::Int16),
                                      {"int24", Format::Int24},
                                      {"int32", Format::Int32},
                                      {"float32", Format::Float32}}) {
        if (format.name == name) {
            return value;
        }
    }
    throw std::logic_error("a format that the library does not know");
}

sonvex::IDeviceConfiguration &deviceOf(const StreamSettings &stream, sonvex::IBufferConfiguration &buffer) {
    using Device = sonvex::IDeviceConfiguration;
    if (stream.format != nullptr) {
        return Device::createInstance(stream.key, buffer, formatOf(*stream.format), stream.channels,
                                      stream.samplesPerChannel, stream.sampleRate);
    }
    constexpr unsigned sampleSize = 2; // bytes
    return Device::createInstance(stream.key, buffer, sampleSize, stream.channels, stream.samplesPerChannel);
}

sonvex::IStreamConfiguration &configurationOf(const StreamSettings &stream, sonvex::INetworkDeviceInfo &adapter,
                                              sonvex::IDeviceConfiguration &device) {
    using Configuration = sonvex::IStreamConfiguration;
    if (stream.isId()) {
        return Configuration::createInstance(stream.key, sonvex::StreamId(stream.key), adapter, device);
    }
    return Configuration::createInstance(stream.key, stream.key, adapter, device);
}

} // namespace

Session::Session(SessionSettings newSettings)
    : settings(std::move(newSettings)), adapter(findAdapter(settings.device)), link(settings.device) {}

Session::~Session() {
    end();
}

void Session::open() {
    ISonvex::createInstance().setMessageReceiver([this](const auto &message) { receiveMessage(*message); });
    for (const auto &stream : settings.streams) {
        addStream(stream);
    }
    for (const auto &analysis : settings.analyses) {
        addAnalysis(analysis);
    }
}

void Session::addStream(const StreamSettings &stream) {
    auto &buffer =
        sonvex::IBufferConfiguration::createInstance(stream.key, settings.bufferSize, clockSamples(settings.analyses));
    auto &device = deviceOf(stream, buffer);
    auto &configuration = configurationOf(stream, adapter, device);
    try {
        capture = &ISonvex::createInstance().addRemoteStreamReceiver(configuration);
    } catch (const exceptions::InstanceNotCreateable &error) {
        throw common::Refusal(openRefusal(settings.device, link.state(), error.what()), common::Refusal::failure);
    }
    adapterFacts = &sonvex::IAdapterFacts::createInstance(*capture);
    const auto &facts = sonvex::IStreamFacts::createInstance(stream.key);
    const auto memory = largestExtent(settings.analyses) + stream.sampleRate;
    streams.emplace(stream.key, Stream{&stream, &facts, Timeline(facts, stream, memory)});
}

void Session::addAnalysis(std::shared_ptr<const Analysis> analysis) {
    const Analysis::Channel &channel = analysis->channel();
    auto &library = ISonvex::createInstance();
    auto &configuration = analysis->configure();
    auto &handle = library.addProcessor(sonvex::IProcessConfiguration::createInstance(
        analysis->name(), configuration, channel.stream, static_cast<unsigned char>(channel.number)));
    analysis->configureProcessor(configuration);
    library.getMeteringDataSource(handle).bindChannelCallback(
        [this, index = running.size()](sonvex::IChannelData &data) { receiveResult(index, data); });
    Stream &stream = streams.at(channel.stream);
    Running entry;
    entry.analysis = std::move(analysis);
    entry.processor = &handle;
    entry.stream = &stream;
    running.push_back(std::move(entry));
}

void Session::start() {
    startTime = Clock::now();
    for (auto &entry : running) {
        entry.lastSign = *startTime;
    }
    for (auto &entry : running) {
        entry.processor->start();
    }
    capture->start();
}

void Session::end() {
    if (std::exchange(ended, true)) {
        return;
    }
    endTime = Clock::now();
    if (startTime) {
        capture->stop();
        for (auto &entry : running) {
            entry.processor->stop();
        }
    }
    // No calculation is left after it, so what is on its way then has been posted.
    ISonvex::destroy();
    QCoreApplication::sendPostedEvents();
    ISonvex::createInstance().setMessageReceiver({});
}

void Session::receiveResult(std::size_t index, sonvex::IChannelData &data) {
    Running &entry = running[index];
    entry.lastSign = Clock::now();
    Timeline &timeline = entry.stream->timeline;
    timeline.update();
    auto result = std::make_shared<Result>();
    result->analysis = entry.analysis;
    result->sequence = entry.results++;
    result->x = data.getVectorData().getX();
    result->y = data.getVectorData().getY();
    const Analysis &analysis = *entry.analysis;
    result->endSample = timeline.end();
    std::uint64_t extent = analysis.extent();
    if (!analysis.clock().internal) {
        const std::uint64_t cycles = entry.results * analysis.cyclesPerResult() + analysis.cyclesBefore();
        const std::uint64_t samples = cycles * analysis.clock().period; // of the channel
        result->endSample = samples + entry.absence;
        extent = std::max<std::uint64_t>(extent, analysis.clock().period);
    }
    result->endTime = timeline.timeOf(result->endSample);
    const std::uint64_t first = result->endSample - std::min(extent, result->endSample);
    result->behindGap = timeline.hasGap(first, result->endSample) || (entry.absence > 0 && first <= entry.absenceEnd);
    if (resultReceiver) {
        resultReceiver(std::move(result));
    }
}

void Session::receiveMessage(const sonvex::imessages::IBaseMessage &message) {
    ++messages;
    const auto decoded = std::make_shared<const Message>(decode(message));
    if (decoded->change) {
        followChannels(decoded->id, decoded->change->after);
    }
    if (messageReceiver) {
        messageReceiver(decoded);
    }
}

/// The stream's position runs on while it is without a channel.
void Session::followChannels(const std::string &stream, int channels) {
    for (auto &entry : running) {
        const Analysis::Channel &channel = entry.analysis->channel();
        if (channel.stream != stream) {
            continue;
        }
        entry.stream->timeline.update();
        const std::uint64_t position = entry.stream->timeline.end();
        const bool isThere = channels > static_cast<int>(channel.number);
        if (isThere && entry.goneAt) {
            entry.absence += position - *entry.goneAt;
            entry.absenceEnd = position;
            entry.goneAt.reset();
        } else if (!isThere && !entry.goneAt) {
            entry.goneAt = position;
        }
    }
}

double Session::seconds() const {
    return startTime ? std::chrono::duration<double>(endTime.value_or(Clock::now()) - *startTime).count() : 0.0;
}

bool Session::isOverdue(const Running &entry) const {
    const std::chrono::duration<double> silence = endTime.value_or(Clock::now()) - entry.lastSign;
    return silence.count() >= std::max(Health::patience, 2 * entry.analysis->period());
}

Status Session::examine() {
    Status status;
    status.seconds = seconds();
    status.messages = messages;
    status.adapter.link = link.state();
    if (adapterFacts != nullptr) {
        status.adapter.endReason = adapterFacts->getEndReason();
        status.adapter.seen = adapterFacts->getFramesSeen();
        status.adapter.ofNoStream = adapterFacts->getFramesOfNoStream();
        status.adapter.kernelDrops = adapterFacts->getKernelDrops();
    }
    for (const auto &stream : settings.streams) {
        if (const auto found = streams.find(stream.key); found != streams.end()) {
            status.streams.push_back(statusOf(stream.key, *found->second.facts));
        }
    }
    const double elapsed = status.seconds - std::exchange(examinedAt, status.seconds);
    // Was this process itself held up, its results are still on their way.
    const bool wasStalled = elapsed > Health::patience;
    for (auto &entry : running) {
        entry.lastSign = wasStalled ? endTime.value_or(Clock::now()) : entry.lastSign;
        AnalysisStatus analysis{entry.analysis, entry.results, 0.0, AnalysisStatus::State::running};
        const std::uint64_t before = std::exchange(entry.resultsBefore, entry.results);
        if (elapsed > 0.0) {
            analysis.resultsPerSecond = static_cast<double>(entry.results - before) / elapsed;
        }
        if (startTime && isOverdue(entry)) {
            analysis.state = AnalysisStatus::State::silent;
        } else if (entry.results == 0) {
            analysis.state = AnalysisStatus::State::waiting;
        }
        status.analyses.push_back(std::move(analysis));
    }
    status.conditions = health.examine(status);
    return status;
}

} // namespace monitoring
