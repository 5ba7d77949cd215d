// One frame for a receiver of all streams, which lives on but forgets the frame: nothing before it has a say.
#include "CheckedReceiver.h"

namespace {

struct Streams : fuzz::CheckedReceiver {
    Streams() {
        for (std::size_t stream = 0; stream < fuzz::streams.size(); ++stream) {
            if (stream != fuzz::streamWithSharedSource) {
                addStream(stream);
            }
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static Streams receiver;
    receiver.restart();
    fuzz::Input input(data, size);
    const std::size_t stream = input.byte() % fuzz::streams.size();
    receiver.receive(fuzz::InventedFrame(input, fuzz::streams[stream], 0));
    return 0;
}
