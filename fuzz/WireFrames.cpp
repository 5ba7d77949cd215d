// Frames for a survey of the wire: behind a byte for the kind of header and one for the length, any bytes.
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "discovery/Survey.h"
#include "framesTaken.h"

namespace {

using Header = std::vector<std::uint8_t>;

/// Addresses and EtherType; the first has none, so that these are invented, too.
const std::array<Header, 6> headers{{{},
                                     {0x91, 0xe0, 0xf0, 0, 0xfe, 0, 2, 0, 0, 0, 0, 1, 0x22, 0xf0},
                                     {0x91, 0xe0, 0xf0, 0, 0xfe, 0, 2, 0, 0, 0, 0, 1, 0x22, 0xf0, 2, 0x81},
                                     {0x91, 0xe0, 0xf0, 0, 0xfe, 0, 2, 0, 0, 0, 0, 1, 0x81, 0, 0x60, 2, 0x22, 0xf0},
                                     {1, 0x80, 0xc2, 0, 0, 0x0e, 2, 0, 0, 0, 0, 1, 0x22, 0xea, 0},
                                     {0x91, 0xe0, 0xf0, 0, 0xfe, 0, 2, 0, 0, 0, 0, 1, 0x81, 0}}};

unsigned long long taken = 0;

void require(bool condition, const char *what) {
    if (!condition) {
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }
}

void check(const discovery::Findings &findings, std::uint64_t frames) {
    const auto &counts = findings.frames;
    require(counts.avtp + counts.reservations + counts.severalTags + counts.incomplete + counts.otherVersion <= frames,
            "a frame counts twice");
    std::uint64_t ofStreams = 0;
    for (const auto &stream : findings.streams) {
        ofStreams += stream.frames;
        require(stream.obstacle.empty() != stream.argument.empty(), "neither monitored nor not");
        require(!stream.format.name().empty(), "a stream of no kind");
        require(stream.framesPerSecond.value_or(1) > 0, "frames per second");
    }
    require(ofStreams + counts.control == counts.avtp || findings.streamsBeyond > 0, "a frame of no stream");
    for (const auto &offer : findings.offers) {
        require(!discovery::describeFailure(offer.failureCode.value_or(0)).empty(), "a failure without words");
    }
    taken += ofStreams + findings.offers.size();
}

} // namespace

unsigned long long fuzz::framesTaken() {
    return taken;
}

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/);

int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    discovery::Survey survey;
    std::uint64_t frames = 0;
    std::int64_t time = 0;
    while (size >= 2) {
        const Header &header = headers[data[0] % headers.size()];
        const std::size_t more = data[0] / headers.size(); // on the wire, than was captured
        const std::size_t length = data[1] < size - 2 ? data[1] : size - 2;
        // From memory that ends with the frame, so that the sanitizer sees every read past it.
        const auto frame = std::make_unique<std::uint8_t[]>(header.size() + length);
        for (std::size_t i = 0; i < header.size() + length; ++i) {
            frame[i] = i < header.size() ? header[i] : data[2 + i - header.size()];
        }
        survey.add({frame.get(), header.size() + length}, header.size() + length + more, time);
        time += data[1] * 1000; // some at the same time
        data += 2 + length;
        size -= 2 + length;
        ++frames;
    }
    check(survey.describe(1), frames);
    return 0;
}
