#include "endurance/StreamTalker.h"

#include <chrono>
#include <memory>
#include <random>
#include <system_error>

#include "common/Refusal.h"
#include "support/Frames.h"
#include "talker/RawSocket.h"

namespace endurance {

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto tick = std::chrono::milliseconds(1);
constexpr unsigned packetsPerTick = 8; // class A
constexpr std::size_t sequenceOffset = 16;
constexpr std::size_t channelsOffset = 32;
constexpr std::size_t dataLengthOffset = 35;
constexpr unsigned oneOf = 997; // frames, one is damaged

} // namespace

StreamTalker::StreamTalker(std::string adapter, const std::vector<std::string> &macs) : adapter(std::move(adapter)) {
    for (const std::string &mac : macs) {
        streams.push_back(
            {support::makeFrame(mac, 0, channels, samplesPerPacket, [](unsigned sample, unsigned channel) {
                return static_cast<std::int16_t>(1000 * sample + channel);
            })});
    }
    thread = std::thread([this] { run(); });
}

StreamTalker::~StreamTalker() {
    ended = true;
    thread.join();
}

void StreamTalker::run() {
    std::mt19937 random(42);
    talker::RawSocket socket(adapter);
    const auto send = [&](const std::vector<std::uint8_t> &frame) {
        try {
            socket.send(frame.data(), frame.size());
            ++frames;
        } catch (const std::system_error &) { // the adapter is down, or has gone
            std::this_thread::sleep_for(tick);
        }
    };
    for (auto next = Clock::now(); !ended; next += tick) {
        std::this_thread::sleep_until(next);
        if (Clock::now() - next > std::chrono::milliseconds(100)) {
            next = Clock::now(); // a machine that was away for so long does not catch up
        }
        if (paused) {
            continue;
        }
        for (unsigned i = 0; i < packetsPerTick; ++i) {
            for (Stream &stream : streams) {
                const std::uint32_t packet = ++stream.packet;
                stream.frame[sequenceOffset] = static_cast<std::uint8_t>(packet);
                if (!damage || packet % oneOf != 0) {
                    send(stream.frame);
                    continue;
                }
                std::vector<std::uint8_t> frame = stream.frame;
                switch (random() % 4) {
                case 0:
                    ++omissions;
                    break;
                case 1: // longer than it says
                    ++frame[dataLengthOffset];
                    ++damages;
                    send(frame);
                    break;
                case 2: // more channels than the receiver expects
                    frame[channelsOffset] = channels + 1;
                    ++damages;
                    send(frame);
                    break;
                default: // of nobody, and of any bytes; and the good one
                    for (std::size_t byte = 6; byte < frame.size(); ++byte) {
                        frame[byte] = byte < 12 || byte > 14 ? static_cast<std::uint8_t>(random()) : frame[byte];
                    }
                    frame[6] = 0xFE;
                    send(frame);
                    send(stream.frame);
                    break;
                }
            }
        }
    }
}

} // namespace endurance
