// Sequences of captured frames of any bytes and lengths, on a receiver with two streams. Nothing is read past a frame,
// and nothing but the samples of good frames reaches a buffer.
#include <algorithm>
#include <cstdlib>
#include <vector>

#include <QtGlobal>

#include "avb/AvtpPacketReceiver.h"
#include "core/configuration/DeviceConfiguration.h"

extern "C" int LLVMFuzzerInitialize(int * /*argc*/, char *** /*argv*/) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    sonvex::BufferConfiguration buffer("buffer", 50, 7);
    sonvex::DeviceConfiguration stereo("stereo", &buffer, 2, 2, 6);
    sonvex::DeviceConfiguration wide("wide", &buffer, 3, 8, 1);
    avb::AvtpPacketReceiver receiver(2, nullptr);
    receiver.addStreamingDevice("020000000001", stereo);
    receiver.addStreamingDevice("020000000002", wide);
    // Each frame: its captured length, how much longer or shorter it says that it was on the wire, then its bytes.
    while (size >= 2) {
        const std::size_t captured = std::min<std::size_t>(data[0], size - 2);
        const int wireOffset = static_cast<signed char>(data[1]);
        std::vector<std::uint8_t> frame(data + 2, data + 2 + captured);
        if (captured > 14 && (wireOffset & 1) == 0) { // half of them get past the first checks
            std::fill(frame.begin() + 6, frame.begin() + 12, std::uint8_t{0});
            frame[6] = 2;
            frame[11] = static_cast<std::uint8_t>(1 + (frame[13] & 1));
            frame[14] = 2;
        }
        pcap_pkthdr header{};
        header.caplen = static_cast<bpf_u_int32>(captured);
        header.len = static_cast<bpf_u_int32>(static_cast<int>(captured) + wireOffset);
        receiver.receivePacket(nullptr, &header, frame.data());
        data += 2 + captured;
        size -= 2 + captured;
    }
    for (const char *mac : {"020000000001", "020000000002"}) {
        for (const float sample : receiver.getAudioBuffer(mac, 1)->fetchLatestSamples(50)) {
            if (sample < -1.0F || sample >= 1.0F) {
                std::abort();
            }
        }
    }
    return 0;
}
