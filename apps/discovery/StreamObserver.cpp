#include "discovery/StreamObserver.h"

#include <algorithm>

namespace discovery {

namespace {

constexpr double nanosecondsPerSecond = 1e9;
constexpr std::int64_t longestUnambiguous = 1'000'000'000; // ns without a time stamp; they wrap after 4.3 s
constexpr double leastTimestamps = 0.05e9;                 // ns

double seconds(std::int64_t nanoseconds) {
    return static_cast<double>(nanoseconds) / nanosecondsPerSecond;
}

} // namespace

void StreamObserver::add(const EthernetFrame &frame, const AvtpPacket &packet, std::int64_t time) {
    followAddresses(frame);
    followFormat(packet);
    followSamples(packet);
    const bool silent = stream.frames > 0 && time - lastArrival > longestUnambiguous;
    if (!followSequence(packet) || silent || !packet.samples) {
        breakOff();
    }
    followArrival(time);
    followClock(packet);
    position += packet.samples.value_or(0);
    stream.framesCutShort += packet.isWhole ? 0 : 1;
    ++stream.frames;
}

void StreamObserver::followAddresses(const EthernetFrame &frame) {
    const bool same =
        stream.source == frame.source && stream.destination == frame.destination && stream.tag == frame.tag;
    stream.addressChanges += same || stream.frames == 0 ? 0 : 1;
    stream.source = frame.source;
    stream.destination = frame.destination;
    stream.tag = frame.tag;
}

void StreamObserver::followFormat(const AvtpPacket &packet) {
    stream.id = packet.id;
    if (stream.frames > 0 && stream.format == packet.format) {
        return;
    }
    stream.formatChanges += stream.frames > 0 ? 1 : 0;
    stream.format = packet.format;
    stream.samples.reset();
    hasRest = false;
    timestamps.reset();
    arrivals.reset();
    hasTimestamp = false;
    if (packet.format.rate) {
        const double period = nanosecondsPerSecond / *packet.format.rate;
        const unsigned packets = packet.format.sparseTimestamps ? 8 : 1; // from one time stamp to the next
        timestamps.emplace(period, std::max(1.0, packet.samples.value_or(1) * packets * period));
        arrivals.emplace(period);
    }
}

void StreamObserver::followSamples(const AvtpPacket &packet) {
    stream.dataLength = packet.dataLength;
    hasRest = hasRest || !packet.samples;
    if (hasRest) {
        stream.samples.reset();
        return;
    }
    const unsigned amount = *packet.samples;
    auto &samples = stream.samples;
    samples = samples ? WireStream::Samples{std::min(samples->least, amount), std::max(samples->greatest, amount)}
                      : WireStream::Samples{amount, amount};
}

/// @return whether the frame comes right behind the one before
bool StreamObserver::followSequence(const AvtpPacket &packet) {
    if (!packet.sequence) {
        return true;
    }
    const std::uint8_t received = *packet.sequence;
    const auto followsLast = received == static_cast<std::uint8_t>(lastSequence + 1);
    lastSequence = received;
    if (stream.frames == 0 || followsLast) {
        newestSequence = received;
        return true;
    }
    constexpr std::uint8_t half = 128;
    const auto skipped = static_cast<std::uint8_t>(received - newestSequence - 1);
    if (skipped >= half) {
        ++stream.framesOutOfOrder;
        return false;
    }
    stream.gaps += skipped > 0 ? 1 : 0; // none where a late frame came in between
    stream.framesLost += skipped;
    newestSequence = received;
    return false;
}

void StreamObserver::followArrival(std::int64_t time) {
    if (stream.frames == 0) {
        firstArrival = time;
    } else {
        const std::int64_t distance = time - lastArrival;
        leastDistance = stream.frames == 1 ? distance : std::min(leastDistance, distance);
        greatestDistance = stream.frames == 1 ? distance : std::max(greatestDistance, distance);
    }
    lastArrival = time;
    if (arrivals) {
        arrivals->add(position, time);
    }
}

void StreamObserver::followClock(const AvtpPacket &packet) {
    const bool restarted = stream.frames > 0 && packet.restart != lastRestart;
    lastRestart = packet.restart;
    stream.clockRestarts += restarted ? 1 : 0;
    stream.timestampsUncertain += packet.uncertain ? 1 : 0;
    if (restarted && timestamps) {
        timestamps->breakOff();
    }
    if (!packet.timestamp) {
        return;
    }
    ++stream.timestampsValid;
    // The time stamps of the other kinds don't belong to a packet's first sample.
    if (!timestamps || stream.format.kind == StreamFormat::Kind::iec61883) {
        return;
    }
    const std::uint32_t distance = *packet.timestamp - lastTimestamp;
    presentation += hasTimestamp ? static_cast<std::int32_t>(distance) : 0;
    lastTimestamp = *packet.timestamp;
    hasTimestamp = true;
    stream.timestampLeaps += timestamps->add(position, presentation) ? 0 : 1;
}

void StreamObserver::breakOff() {
    hasTimestamp = false;
    if (timestamps) {
        timestamps->breakOff();
        arrivals->breakOff();
    }
}

WireStream StreamObserver::describe() const {
    WireStream described = stream;
    described.firstHeard = seconds(firstArrival);
    described.lastHeard = seconds(lastArrival);
    if (stream.format.kind == StreamFormat::Kind::clockReference) {
        described.samples.reset();
    }
    if (timestamps) {
        described.timestampPpm = timestamps->ppm(leastTimestamps);
        described.arrivalPpm = arrivals->ppm();
    }
    if (stream.frames > 1 && lastArrival > firstArrival) {
        const double mean = seconds(lastArrival - firstArrival) / static_cast<double>(stream.frames - 1);
        described.framesPerSecond = 1 / mean;
        described.arrivalDistance = WireStream::Distance{seconds(leastDistance), mean, seconds(greatestDistance)};
    }
    return described;
}

} // namespace discovery
