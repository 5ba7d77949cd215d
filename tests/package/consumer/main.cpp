#include <sonvex/sonvex.h>

#ifdef QT_VERSION
#error "The interface includes Qt headers"
#endif

#include <QCoreApplication>
#include <iostream>

namespace {

int failures = 0;

void expect(bool condition, const char *what) {
    if (!condition) {
        std::cerr << "not true: " << what << '\n';
        ++failures;
    }
}

bool isIndexZeroRefused(sonvex::INetworkDeviceManager &adapters) {
    try {
        adapters.getDeviceInfo(0);
    } catch (const exceptions::ResourceNotAvailable &refusal) {
        return !std::string(refusal.what()).empty();
    }
    return false;
}

} // namespace

int main(int argc, char *argv[]) {
    QCoreApplication application(argc, argv); // the package brings Qt
    expect(qo::sonvexLib::getInterfaceVersion() == 101, "the interface version is 101");
    expect(qo::sonvexLib::isCompatibleWithInterfaceVersion(101), "version 101 is compatible");
    expect(!qo::sonvexLib::isCompatibleWithInterfaceVersion(100), "version 100 is not compatible");
    expect(!qo::sonvexLib::isCompatibleWithInterfaceVersion(102), "version 102 is not compatible");
    expect(ISonvex::getVersion().getVersionString() == qo::sonvexLib::getVersion(), "both ways to ask agree");

    auto &adapters = sonvex::INetworkDeviceManager::createInstance();
    for (unsigned int index = 1; index <= adapters.getDeviceCount(); ++index)
        std::cout << adapters.getDeviceInfo(index).getSystemDeviceName() << '\n';
    expect(isIndexZeroRefused(adapters), "an exception crosses the library's boundary with its type");

    auto &waveform = sonvex::iprocess::IWaveformConfig::createInstance("waveform", 480);
    expect(waveform.getSampleAmount() == 480, "the configuration holds what it was made with");
    expect(dynamic_cast<sonvex::iprocess::ISampleProcessorConfigBase *>(&waveform) != nullptr, "its type is known");
    ISonvex::destroy();
    return failures;
}
