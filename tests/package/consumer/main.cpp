#include <iostream>

#include <sonvex/sonvex.h>

#if __has_include(<qglobal.h>) || defined(QT_CORE_LIB)
#error "The package puts Qt on the compile line of a host that does not ask for it"
#endif

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

int main() {
    expect(qo::sonvexLib::getInterfaceVersion() == 101, "the interface version is 101");
    expect(qo::sonvexLib::isCompatibleWithInterfaceVersion(101), "version 101 is compatible");
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
