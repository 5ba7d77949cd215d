// A host that ends in the way its argument names, while frames arrive. Its exit status says whether it came to its end.
#include <cstdlib>
#include <memory>
#include <string>

#include <QCoreApplication>
#include <QTimer>

#include <sonvex/sonvex.h>

namespace {

sonvex::INetworkDeviceInfo &loopback() {
    auto &manager = sonvex::INetworkDeviceManager::createInstance();
    unsigned index = 1;
    while (manager.getDeviceInfo(index).getSystemDeviceName() != "lo") {
        ++index;
    }
    return manager.getDeviceInfo(index);
}

struct Run {
    Run()
        : buffer(sonvex::IBufferConfiguration::createInstance("buffer", 4800, 48)),
          device(sonvex::IDeviceConfiguration::createInstance("device", buffer, 2, 2, 6)),
          capture(facade.addRemoteStreamReceiver(
              sonvex::IStreamConfiguration::createInstance("stream", "020000000001", loopback(), device))),
          external(facade.addProcessor(sonvex::IProcessConfiguration::createInstance(
              "external", sonvex::iprocess::IWaveformConfig::createInstance("e", 48), "020000000001", 0))),
          internal(facade.addProcessor(sonvex::IProcessConfiguration::createInstance(
              "internal", sonvex::iprocess::IWaveformConfig::createInstance("i", 48, 1), "020000000001", 1))) {
        for (auto *handle : {&external, &internal}) {
            facade.getMeteringDataSource(*handle).bindChannelCallback([this](sonvex::IChannelData &) { ++results; });
            handle->start();
        }
        capture.start();
    }

    ISonvex &facade = ISonvex::createInstance();
    sonvex::IBufferConfiguration &buffer;
    sonvex::IDeviceConfiguration &device;
    sonvex::ihandles::INetworkReceiverHandle &capture;
    sonvex::ihandles::IProcessorHandle &external;
    sonvex::ihandles::IProcessorHandle &internal;
    int results = 0;
};

/// Runs the loop until results have come.
void runUntilResults(QCoreApplication &application, const Run &run) {
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (run.results > 20) {
            application.quit();
        }
    });
    poll.start(1);
    application.exec();
}

} // namespace

int main(int argc, char **argv) {
    const std::string way = argc > 1 ? argv[1] : "";
    if (way == "withoutApplication") {
        static const Run *const run = new Run; // stays, as the callbacks' target
        return run->results;
    }
    auto application = std::make_unique<QCoreApplication>(argc, argv);
    static Run *const kept = new Run; // stays, as the callbacks' target, whatever is delivered late
    Run &run = *kept;
    runUntilResults(*application, run);
    if (way == "return") {
        return 0;
    }
    if (way == "exit") {
        std::exit(0);
    }
    if (way == "leakApplication") {
        static QCoreApplication *leaked = application.release();
        return leaked == nullptr ? 1 : 0;
    }
    if (way == "secondApplication") {
        application.reset();
        if (run.capture.isRunning()) {
            return 1;
        }
        application = std::make_unique<QCoreApplication>(argc, argv);
        run.capture.start();
        run.results = 0;
        runUntilResults(*application, run);
        return 0;
    }
    if (way == "destroy") {
        run.internal.start();
        ISonvex::destroy();
        ISonvex::destroy();
        run.external.start();
        run.capture.start();
        const bool idle = !run.external.isProcessingActive() && !run.capture.isRunning();
        QCoreApplication::processEvents();
        run.facade.removeProcessor(run.internal);
        return idle ? 0 : 1;
    }
    return 2;
}
