#include "live/PacedTalker.h"

#include <algorithm>
#include <atomic>
#include <system_error>

#include "live/SendTime.h"
#include "talker/AafFrame.h"
#include "talker/Pacer.h"

namespace live {

namespace {

constexpr std::size_t largestBatch = 1024;

} // namespace

PacedTalker::PacedTalker(const std::string &adapter, const Traffic &traffic)
    : traffic(traffic), socket(adapter), batch(largestBatch), sequences(traffic.streams) {
    for (unsigned place = 0; place < largestBatch / traffic.streams * traffic.streams; ++place) {
        const common::MacAddress address = Traffic::address(place % traffic.streams);
        talker::AafFrame frame(address, {0x91, 0xE0, 0xF0, 0, 0, address.back()}, traffic.format);
        if (traffic.tagged) {
            frame.setTag({Traffic::vlan, Traffic::vlanPriority});
        }
        for (unsigned sample = 0; sample < traffic.format.samplesPerChannel; ++sample) {
            for (unsigned channel = 0; channel < traffic.format.channels; ++channel) {
                frame.setSample(sample, channel, (place * 97 + sample * 13 + channel) / 32768.0);
            }
        }
        frames.emplace_back(frame.data(), frame.data() + frame.size());
    }
}

double PacedTalker::send(std::uint64_t amount) {
    return send(amount, false);
}

double PacedTalker::sendTimed(std::uint64_t amount) {
    return send(amount, true);
}

double PacedTalker::send(std::uint64_t amount, bool timed) {
    using Seconds = std::chrono::duration<double>;
    const std::atomic<bool> never{false};
    const talker::Pacer pacer;
    amount -= amount % traffic.streams;
    std::uint64_t done = 0;
    for (unsigned tick = 1; done < amount; ++tick) {
        const Seconds moment(static_cast<double>(tick) / traffic.batchesASecond);
        pacer.waitUntil(std::chrono::duration_cast<talker::Pacer::Duration>(moment), never);
        const auto due = static_cast<std::uint64_t>(Seconds(pacer.elapsed()).count() * traffic.rate);
        while (done < std::min(amount, due - due % traffic.streams)) {
            const std::uint64_t next = std::min<std::uint64_t>(std::min(amount, due) - done, frames.size());
            sendBatch(next - next % traffic.streams, timed);
            done += next - next % traffic.streams;
        }
    }
    return static_cast<double>(done) / Seconds(pacer.elapsed()).count();
}

void PacedTalker::sendBatch(std::size_t amount, bool timed) {
    const std::size_t tag = traffic.tagged ? talker::VlanTag::size : 0;
    const std::size_t sequenceOffset = talker::AafFrame::ethernetHeaderSize + 2 + tag;
    const std::size_t samplesOffset = talker::AafFrame::headerSize + tag;
    const std::int64_t time = timed ? SendTime::now() : 0;
    for (std::size_t place = 0; place < amount; ++place) {
        std::vector<std::uint8_t> &frame = frames[place];
        frame[sequenceOffset] = sequences[place % traffic.streams]++;
        if (timed) {
            SendTime::write(time, [&](unsigned sample, std::uint16_t code) {
                const std::size_t offset = samplesOffset + std::size_t{sample} * traffic.format.channels * sizeof code;
                frame[offset] = static_cast<std::uint8_t>(code >> 8);
                frame[offset + 1] = static_cast<std::uint8_t>(code);
            });
        }
    }
    for (std::size_t next = 0; next < amount;) {
        batch.clear();
        for (std::size_t place = next; place < amount; ++place) {
            batch.add(frames[place].data(), frames[place].size());
        }
        std::uint64_t out = 0;
        try {
            socket.send(batch, out);
        } catch (const std::system_error &error) {
            if (error.code() != std::errc::no_buffer_space) { // the receiving end has no room in its queue
                throw;
            }
            ++refusedFrames;
            ++next;
        }
        next += out;
        sentFrames += out;
    }
}

} // namespace live
