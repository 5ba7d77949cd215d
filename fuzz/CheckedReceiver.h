#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "InventedFrame.h"
#include "Streams.h"
#include "avb/AvtpPacketReceiver.h"

namespace fuzz {

/// A receiver and a model of it, which says what the buffers must hold. Where they differ the process aborts.
class CheckedReceiver {
public:
    CheckedReceiver() : receiver(subtype, nullptr) {}

    void addStream(std::size_t number);
    bool hasStream(std::size_t number) const { return models[number] != nullptr; }
    /// What is in order for the next frame of a stream, unless that is its first.
    std::uint8_t nextSequence(std::size_t number) const;

    /// Compares all buffers of the streams that frames came for since the restart, and of the others the newest sample.
    void receive(const CapturedFrame &frame);

    /// Undoes what frames have done: their streams' buffers are full of a value that no frame holds, to the same cell
    /// each time, and number 0 is in order. Not for streams that share a source.
    void restart();

private:
    struct Channel {
        avb::AvbAudioBuffer *buffer;
        std::vector<float> newest; ///< what the buffer must hold
        std::size_t written;       ///< in all
    };
    struct Model {
        const StreamLayout *layout;
        std::vector<Channel> channels;
        bool first = true;
        std::uint8_t lastSequence = 0;
        bool used = true; ///< since the restart
    };

    void deliver(const CapturedFrame &frame);
    void expectEffects(const CapturedFrame &frame);
    void expectSamples(Model &model, const CapturedFrame &frame);
    void compare(const Model &model, std::size_t channel, std::size_t amount);

    avb::AvtpPacketReceiver receiver;
    std::array<std::unique_ptr<Model>, streams.size()> models;
    std::vector<float> samples; ///< of one channel
};

} // namespace fuzz
