// Prints the peak of every 10 ms of a stream's first channel, for a second. Usage: minimal-host lo 020000000001
#include <QCoreApplication>
#include <algorithm>
#include <iostream>
#include <sonvex/sonvex.h>

static sonvex::INetworkDeviceInfo &findAdapter(const std::string &name) {
    auto &adapters = sonvex::INetworkDeviceManager::createInstance();
    for (unsigned int index = 1; index <= adapters.getDeviceCount(); ++index)
        if (adapters.getDeviceInfo(index).getSystemDeviceName() == name)
            return adapters.getDeviceInfo(index);
    throw exceptions::ResourceNotAvailable("There is no adapter '" + name + "'");
}

int main(int argc, char *argv[]) try {
    QCoreApplication application(argc, argv); // results arrive through its event loop
    auto &adapter = findAdapter(argc > 1 ? argv[1] : "lo");
    const std::string mac = argc > 2 ? argv[2] : "020000000001";
    ISonvex &core = ISonvex::createInstance();
    auto &buffer = sonvex::IBufferConfiguration::createInstance("buffer", 48000, 480);
    auto &device = sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, 2, 6);
    auto &receiver =
        core.addRemoteStreamReceiver(sonvex::IStreamConfiguration::createInstance("stream", mac, adapter, device));
    auto &waveform = sonvex::iprocess::IWaveformConfig::createInstance("waveform", 480);
    auto &processor = core.addProcessor(sonvex::IProcessConfiguration::createInstance("peak", waveform, mac, 0));
    core.getMeteringDataSource(processor).bindChannelCallback([results = 0](sonvex::IChannelData &result) mutable {
        const auto values = result.getVectorData().getY();
        std::cout << result.getName() << ": " << *std::max_element(values.begin(), values.end()) << std::endl;
        if (++results == 100)
            QCoreApplication::quit();
    });
    processor.start();
    receiver.start();
    const int status = application.exec();
    ISonvex::destroy();
    return status;
} catch (const exceptions::SonvexException &refusal) {
    std::cerr << refusal.what() << std::endl;
    return 1;
}
