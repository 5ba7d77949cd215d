#include "analyser/StreamJson.h"

#include <optional>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace analyser {

using discovery::Findings;
using discovery::Offer;
using discovery::WireStream;

namespace {

/// A JSON object by names of Latin-1 letters.
class Object {
public:
    Object &add(const char *name, const QJsonValue &value) {
        object.insert(QLatin1String(name), value);
        return *this;
    }
    Object &add(const char *name, const std::string &value) {
        return add(name, QJsonValue(QString::fromStdString(value)));
    }
    Object &add(const char *name, double value) { return add(name, QJsonValue(value)); }
    Object &add(const char *name, bool value) { return add(name, QJsonValue(value)); }
    Object &add(const char *name, std::uint64_t value) { return add(name, static_cast<double>(value)); }
    Object &add(const char *name, unsigned value) { return add(name, static_cast<double>(value)); }
    template <class Value>
    Object &add(const char *name, const std::optional<Value> &value) {
        return value ? add(name, *value) : add(name, QJsonValue(QJsonValue::Null));
    }
    Object &add(const char *name, const Object &value) { return add(name, QJsonValue(value.object)); }

    QJsonObject object;
};

std::optional<std::string> unlessEmpty(const std::string &text) {
    return text.empty() ? std::nullopt : std::optional(text);
}

std::optional<Object> tagOf(const std::optional<discovery::VlanTag> &tag) {
    return tag ? std::optional(Object().add("id", tag->id).add("priority", tag->priority)) : std::nullopt;
}

std::optional<Object> samplesOf(const std::optional<WireStream::Samples> &samples) {
    return samples ? std::optional(Object().add("least", samples->least).add("greatest", samples->greatest))
                   : std::nullopt;
}

std::optional<Object> distanceOf(const std::optional<WireStream::Distance> &distance) {
    return distance ? std::optional(Object()
                                        .add("least", distance->least)
                                        .add("mean", distance->mean)
                                        .add("greatest", distance->greatest))
                    : std::nullopt;
}

const char *kindOf(const discovery::StreamFormat &format) {
    using Kind = discovery::StreamFormat::Kind;
    switch (format.kind) {
    case Kind::aaf:
        return "aaf";
    case Kind::iec61883:
        return "iec61883";
    case Kind::clockReference:
        return "clockReference";
    case Kind::other:
        break;
    }
    return "other";
}

QJsonObject describe(const WireStream &stream) {
    const auto &format = stream.format;
    const auto *samples = format.samples();
    return Object()
        .add("id", stream.id ? std::optional(common::toString(*stream.id)) : std::nullopt)
        .add("source", common::toString(stream.source))
        .add("destination", common::toString(stream.destination))
        .add("vlan", tagOf(stream.tag))
        .add("kind", std::string(kindOf(format)))
        .add("name", format.name())
        .add("subtype", unsigned{format.subtype})
        .add("format", samples != nullptr ? std::optional(std::string(samples->name)) : std::nullopt)
        .add("bitDepth", format.bitDepth)
        .add("rate", format.rate)
        .add("channels", format.channels)
        .add("samplesPerPacket", samplesOf(stream.samples))
        .add("dataLength", stream.dataLength)
        .add("frames", stream.frames)
        .add("framesPerSecond", stream.framesPerSecond)
        .add("firstHeard", stream.firstHeard)
        .add("lastHeard", stream.lastHeard)
        .add("gaps", stream.gaps)
        .add("framesLost", stream.framesLost)
        .add("framesOutOfOrder", stream.framesOutOfOrder)
        .add("framesCutShort", stream.framesCutShort)
        .add("formatChanges", stream.formatChanges)
        .add("addressChanges", stream.addressChanges)
        .add("clock", Object()
                          .add("timestampsValid", stream.timestampsValid)
                          .add("timestampsUncertain", stream.timestampsUncertain)
                          .add("timestampLeaps", stream.timestampLeaps)
                          .add("sparseTimestamps", format.sparseTimestamps)
                          .add("restarts", stream.clockRestarts)
                          .add("timestampPpm", stream.timestampPpm)
                          .add("arrivalPpm", stream.arrivalPpm))
        .add("arrivalDistance", distanceOf(stream.arrivalDistance))
        .add("canBeMonitored", stream.obstacle.empty())
        .add("hasSoundLevels", stream.hasSoundLevels)
        .add("obstacle", unlessEmpty(stream.obstacle))
        .add("argument", unlessEmpty(stream.argument))
        .object;
}

QJsonObject describe(const Offer &offer) {
    return Object()
        .add("id", common::toString(offer.id))
        .add("destination", common::toString(offer.destination))
        .add("vlan", Object().add("id", offer.vlan).add("priority", offer.priority))
        .add("maxFrameSize", offer.maxFrameSize)
        .add("maxIntervalFrames", offer.maxIntervalFrames)
        .add("failureCode", offer.failureCode)
        .add("failure",
             offer.failureCode ? std::optional(discovery::describeFailure(*offer.failureCode)) : std::nullopt)
        .add("isDelivered", offer.isDelivered)
        .object;
}

template <class Items>
QJsonArray describeAll(const Items &items) {
    QJsonArray all;
    for (const auto &item : items) {
        all.append(describe(item));
    }
    return all;
}

} // namespace

std::string streamJson(const Findings &findings, const std::string &device) {
    const auto &frames = findings.frames;
    const Object document = Object()
                                .add("device", device)
                                .add("seconds", findings.seconds)
                                .add("frames", Object()
                                                   .add("avtp", frames.avtp)
                                                   .add("control", frames.control)
                                                   .add("reservations", frames.reservations)
                                                   .add("severalTags", frames.severalTags)
                                                   .add("incomplete", frames.incomplete)
                                                   .add("otherVersion", frames.otherVersion))
                                .add("kernelDrops", findings.kernelDrops)
                                .add("streamsBeyond", findings.streamsBeyond)
                                .add("announcementsBeyond", findings.announcementsBeyond)
                                .add("streams", QJsonValue(describeAll(findings.streams)))
                                .add("offers", QJsonValue(describeAll(findings.offers)));
    return QJsonDocument(document.object).toJson().toStdString();
}

} // namespace analyser
