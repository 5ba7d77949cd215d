// Frames of two streams, one after the other, for a new receiver. It learns of a stream shortly before the first frame.
#include "CheckedReceiver.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    fuzz::CheckedReceiver receiver;
    fuzz::Input input(data, size);
    const std::uint8_t first = input.byte();
    do {
        const std::size_t stream = (first + input.byte() % 2U) % fuzz::cheapStreams;
        std::uint8_t sequence = input.byte(); // of a first frame
        if (receiver.hasStream(stream)) {
            sequence = receiver.nextSequence(stream);
        } else {
            receiver.addStream(stream);
        }
        receiver.receive(fuzz::InventedFrame(input, fuzz::streams[stream], sequence));
    } while (!input.isEmpty());
    return 0;
}
