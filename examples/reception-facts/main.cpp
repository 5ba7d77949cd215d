// Prints what becomes of a stream's frames, after two seconds. Usage: reception-facts lo 020000000001
#include <QCoreApplication>
#include <QTimer>
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
    QCoreApplication application(argc, argv);
    const std::string mac = argc > 2 ? argv[2] : "020000000001";
    auto &buffer = sonvex::IBufferConfiguration::createInstance("buffer", 48000, 480);
    auto &device = sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, 2, 6);
    auto &adapter = findAdapter(argc > 1 ? argv[1] : "lo");
    auto &capture = ISonvex::createInstance().addRemoteStreamReceiver(
        sonvex::IStreamConfiguration::createInstance("stream", mac, adapter, device));
    capture.start();
    QTimer::singleShot(2000, &application, &QCoreApplication::quit);
    QCoreApplication::exec();
    ISonvex::destroy(); // nothing changes any more; facts stay
    using sonvex::FrameRefusal;
    const auto &stream = sonvex::IStreamFacts::createInstance(mac);
    const auto &facts = sonvex::IAdapterFacts::createInstance(capture);
    std::cout << "frames captured                " << facts.getFramesSeen() << "\ndropped by this machine        "
              << facts.getKernelDrops() << "\nof no stream                   " << facts.getFramesOfNoStream()
              << "\ntaken                          " << stream.getFramesTaken() << "\nlost                           "
              << stream.getFramesLost() << "\nin gaps                        " << stream.getGaps()
              << "\nrefused for channel amount     " << stream.getFramesRefused(FrameRefusal::ChannelAmount)
              << "\nrefused for data length        " << stream.getFramesRefused(FrameRefusal::DataLength)
              << "\nchannels of the newest frame   " << stream.getChannelAmount() << std::endl;
} catch (const exceptions::SonvexException &refusal) {
    std::cerr << refusal.what() << std::endl;
    return 1;
}
