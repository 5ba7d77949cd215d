#include "CheckedReceiver.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include <QtGlobal>

#include "core/configuration/DeviceConfiguration.h"
#include "framesTaken.h"

namespace fuzz {

namespace {

/// No frame holds it.
constexpr float untouched = 2.0F;

/// The receivers come and go, these stay.
struct Configuration {
    explicit Configuration(const StreamLayout &layout)
        : buffer("buffer", layout.bufferSize, layout.signalAmount),
          device("device", &buffer, layout.sampleSize, layout.channels, layout.samplesPerChannel) {}

    sonvex::BufferConfiguration buffer;
    sonvex::DeviceConfiguration device;
};

sonvex::DeviceConfiguration &configurationOf(std::size_t stream) {
    static std::array<std::unique_ptr<Configuration>, streams.size()> configurations;
    if (configurations[stream] == nullptr) {
        configurations[stream] = std::make_unique<Configuration>(streams[stream]);
    }
    return configurations[stream]->device;
}

/// Said at the end, since libFuzzer counts inputs.
struct Count {
    ~Count() { std::fprintf(stderr, "%llu frames received, %llu of them with samples\n", frames, taken); }

    unsigned long long frames = 0;
    unsigned long long taken = 0;
} count;

float sampleAt(const std::uint8_t *bytes) {
    const int code = bytes[0] * 256 + bytes[1] - (bytes[0] < 128 ? 0 : 65536);
    return static_cast<float>(code) / 32768.0F;
}

bool isFrom(const std::array<std::uint8_t, 6> &address, const CapturedFrame &frame) {
    for (std::size_t i = 6; i-- > 0;) { // the last byte tells most apart
        if (address[i] != frame.bytes[6 + i]) {
            return false;
        }
    }
    return true;
}

void expectNewest(std::vector<float> &newest, const std::vector<float> &values) {
    const auto amount = static_cast<std::ptrdiff_t>(std::min(values.size(), newest.size()));
    std::copy(newest.begin() + amount, newest.end(), newest.begin());
    std::copy(values.end() - amount, values.end(), newest.end() - amount);
}

} // namespace

void CheckedReceiver::addStream(std::size_t number) {
    const StreamLayout &layout = streams[number];
    receiver.addStreamingDevice(layout.mac, configurationOf(number));
    models[number] = std::make_unique<Model>();
    models[number]->layout = &layout;
    for (unsigned channel = 0; channel < layout.channels; ++channel) {
        models[number]->channels.push_back(
            {receiver.getAudioBuffer(layout.mac, channel), std::vector<float>(layout.bufferSize, 0.0F), 0});
    }
}

unsigned long long framesTaken() {
    return count.taken;
}

std::uint8_t CheckedReceiver::nextSequence(std::size_t number) const {
    return static_cast<std::uint8_t>(models[number]->lastSequence + 1);
}

void CheckedReceiver::receive(const CapturedFrame &frame) {
    ++count.frames;
    deliver(frame);
    for (const auto &model : models) {
        if (model == nullptr) {
            continue;
        }
        if (!model->used) {
            compare(*model, 0, 1);
            continue;
        }
        for (std::size_t channel = 0; channel < model->channels.size(); ++channel) {
            compare(*model, channel, model->layout->bufferSize);
        }
    }
}

void CheckedReceiver::restart() {
    for (const auto &model : models) {
        if (model == nullptr || !model->used) {
            continue;
        }
        for (Channel &channel : model->channels) {
            const std::size_t size = channel.newest.size();
            if (size > 0 && (channel.written > 0 || channel.newest.back() != untouched)) {
                samples.assign(2 * size - channel.written % size, untouched);
                channel.buffer->writeSamples(samples.data(), samples.size());
                channel.newest.assign(size, untouched);
                channel.written = 0;
            }
        }
        std::array<std::uint8_t, 36> header{}; // ends before the samples
        std::copy(model->layout->address.begin(), model->layout->address.end(), header.begin() + 6);
        header[14] = subtype;
        header[16] = 0xFF;
        header[32] = static_cast<std::uint8_t>(model->layout->channels);
        deliver({header.data(), header.size(), header.size()});
        model->used = false;
    }
}

void CheckedReceiver::deliver(const CapturedFrame &frame) {
    pcap_pkthdr header{};
    header.caplen = frame.capturedLength;
    header.len = frame.wireLength;
    receiver.receivePacket(nullptr, &header, frame.bytes);
    expectEffects(frame);
}

void CheckedReceiver::expectEffects(const CapturedFrame &frame) {
    const std::uint32_t length = frame.bytes == nullptr ? 0 : std::min(frame.capturedLength, frame.wireLength);
    if (length < 15 || frame.bytes[14] != subtype) {
        return;
    }
    for (const auto &model : models) {
        if (model == nullptr || !isFrom(model->layout->address, frame)) {
            continue;
        }
        const bool complete = length >= 36;
        const std::uint8_t sequence = length > 16 ? frame.bytes[16] : std::uint8_t{0};
        const bool inOrder = model->first || sequence == static_cast<std::uint8_t>(model->lastSequence + 1);
        if (model->first || complete) {
            model->lastSequence = sequence;
        }
        model->first = false;
        model->used = true;
        if (complete && inOrder) {
            expectSamples(*model, frame);
            return;
        }
    }
}

void CheckedReceiver::expectSamples(Model &model, const CapturedFrame &frame) {
    const StreamLayout &layout = *model.layout;
    const unsigned channels = frame.bytes[32];
    const unsigned declared = frame.bytes[34] * 256U + frame.bytes[35];
    const std::uint64_t length = std::uint64_t{channels} * layout.samplesPerChannel * layout.sampleSize;
    if (channels > layout.channels || length == 0 || length != declared || frame.capturedLength < 38 + length) {
        return;
    }
    ++count.taken;
    for (unsigned channel = 0; channel < channels; ++channel) {
        samples.resize(layout.samplesPerChannel);
        for (unsigned i = 0; i < layout.samplesPerChannel; ++i) {
            const std::uint8_t *bytes = frame.bytes + 38 + (i * channels + channel) * layout.sampleSize;
            samples[i] = layout.sampleSize == 2 ? sampleAt(bytes) : 0.0F;
        }
        expectNewest(model.channels[channel].newest, samples);
        model.channels[channel].written += samples.size();
    }
}

void CheckedReceiver::compare(const Model &model, std::size_t channel, std::size_t amount) {
    const std::vector<float> &expected = model.channels[channel].newest;
    amount = std::min(amount, expected.size());
    samples = model.channels[channel].buffer->fetchLatestSamples(amount, std::move(samples));
    if (samples.size() != amount ||
        !std::equal(samples.begin(), samples.end(), expected.data() + expected.size() - amount)) {
        std::fprintf(stderr, "stream %s, channel %zu: the buffer holds other samples than it should\n",
                     model.layout->mac, channel);
        std::abort();
    }
}

} // namespace fuzz

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/);

int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return 0;
}
