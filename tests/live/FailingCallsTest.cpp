#include <functional>
#include <iostream>
#include <map>
#include <memory>

#include <gtest/gtest.h>

#include <sonvex/sonvex.h>

#include "support/FailingCall.h"
#include "support/Frames.h"
#include "support/LogRecorder.h"
#include "support/SparedMemory.h"
#include "support/loopback.h"
#include "support/waitFor.h"
#include "talker/RawSocket.h"

// What the system may refuse is refused once, at every point where a host's run asks for it: the host hears a
// documented refusal or finds a line, does what it wanted again, and goes on.
namespace {

using namespace sonvex::iprocess;
using support::Call;
using support::FailingCall;

constexpr unsigned clockAmount = 480;

/// A host that takes a refusal for what it is and tries once more.
class PatientHost {
public:
    /// Sets a run up and starts it. Each step may be refused once.
    void begin() {
        addStream();
        addAnalyses();
        start();
    }

    void addStream() {
        attempt([&] { buffer = &sonvex::IBufferConfiguration::createInstance("buffer", 48000, clockAmount); });
        attempt([&] { device = &sonvex::IDeviceConfiguration::createInstance("device", *buffer, 2, 2, 6); });
        attempt([&] {
            stream = &sonvex::IStreamConfiguration::createInstance("stream", mac, support::loopback(), *device);
        });
        attempt([&] { capture = &ISonvex::createInstance().addRemoteStreamReceiver(*stream); });
    }

    void addAnalyses() {
        silences = silencingLines();
        attempt([&] { waveform = &IWaveformConfig::createInstance("waveform", 4800); });
        attempt([&] { spectrum = &ISpectrumConfig::createInstance("spectrum", 0); });
        attempt([&] { levels = &ISoundLevelValueConfig::createInstance("levels", 6 * clockAmount); });
        set([this] { spectrum->setFftOrder(11); });
        add(*waveform);
        add(*spectrum);
        add(*levels);
        set([this] { spectrum->setMovingAverageActive(true); });
    }

    void removeAnalyses() {
        for (auto *processor : processors) {
            ISonvex::createInstance().removeProcessor(*processor);
        }
        processors.clear();
    }

    void start() {
        for (auto *processor : processors) {
            attempt([&] { processor->start(); });
        }
        attempt([&] { capture->start(); });
        if (!capture->isRunning()) {
            ++refusals;
            capture->start();
        }
        EXPECT_TRUE(capture->isRunning());
    }

    /// Plays the stream until each analysis has delivered with the given lengths.
    /// @return false if a line says that the spectrum will not
    bool awaitResults(std::size_t waveformLength, std::size_t spectrumLength) {
        const std::vector<std::size_t> wanted{waveformLength, spectrumLength, 7};
        lengths.assign(wanted.size(), 0);
        const auto isSilenced = [this] { return silencingLines() > silences; };
        EXPECT_TRUE(support::waitFor([&] {
            if (log.count("The capture ended by itself!") > restarts) {
                ++restarts;
                ++refusals;
                capture->stop();
                capture->start();
            }
            talker.send(80);
            return lengths == wanted || isSilenced();
        }));
        silences = silencingLines();
        return lengths == wanted;
    }

    void stop() {
        for (auto *processor : processors) {
            processor->stop();
        }
        capture->stop();
    }

    ISpectrumConfig &spectra() { return *spectrum; }
    IWaveformConfig &waveforms() { return *waveform; }
    int warnings() const { return static_cast<int>(log.warnings().size()); }

    int refusals = 0; ///< exceptions, and starts without effect

private:
    /// Sends on the loopback adapter what the stream's talker would.
    struct Talker {
        explicit Talker(const std::string &mac) : mac(mac) {}
        void send(unsigned packets) {
            const support::SparedMemory spared;
            for (unsigned i = 0; i < packets; ++i) {
                const auto frame = support::makeFrame(mac, sequence++, 2, 6, [](unsigned, unsigned) { return 5; });
                socket.send(frame.data(), frame.size());
            }
        }
        const std::string mac;
        talker::RawSocket socket{"lo"};
        std::uint8_t sequence = 0;
    };

    int silencingLines() const {
        const support::SparedMemory spared;
        return log.count("FFT order set to value '") + log.count("::fftOrderChanged \"process\" Not enough");
    }

    /// What has no way to refuse: a setter, whose small memory is not what the tests are about.
    template <class Setter>
    static void set(Setter &&setter) {
        const support::SparedMemory spared;
        setter();
    }

    template <class Step>
    void attempt(Step &&step) {
        try {
            step();
        } catch (const exceptions::SonvexException &) {
            ++refusals;
            step();
        } catch (const std::bad_alloc &) {
            ++refusals;
            step();
        }
    }

    void add(IProcessorConfigBase &config) {
        sonvex::IProcessConfiguration *process = nullptr;
        attempt([&] { process = &sonvex::IProcessConfiguration::createInstance("process", config, mac, 0); });
        sonvex::ihandles::IProcessorHandle *handle = nullptr;
        attempt([&] { handle = &ISonvex::createInstance().addProcessor(*process); });
        const std::size_t index = processors.size();
        set([&] { processors.push_back(handle); });
        attempt([&] {
            ISonvex::createInstance().getMeteringDataSource(*handle).bindChannelCallback(
                [index](sonvex::IChannelData &data) {
                    const support::SparedMemory spared;
                    lengths.at(index) = data.getVectorData().getY().size();
                });
        });
    }

    const std::string mac = "0200000000f1";
    static inline std::vector<std::size_t> lengths = std::vector<std::size_t>(3); ///< of the latest results
    support::LogRecorder log;
    Talker talker{mac};
    int restarts = 0;
    int silences = 0;
    sonvex::IBufferConfiguration *buffer = nullptr;
    sonvex::IDeviceConfiguration *device = nullptr;
    sonvex::IStreamConfiguration *stream = nullptr;
    IWaveformConfig *waveform = nullptr;
    ISpectrumConfig *spectrum = nullptr;
    ISoundLevelValueConfig *levels = nullptr;
    sonvex::ihandles::INetworkReceiverHandle *capture = nullptr;
    std::vector<sonvex::ihandles::IProcessorHandle *> processors;
};

/// Begins a run and adds nothing: what goes then has no way to refuse.
void dropLastRun() {
    ISonvex::destroy();
    auto &config = IWaveformConfig::createInstance("none", 1);
    auto &process = sonvex::IProcessConfiguration::createInstance("none", config, "no stream", 0);
    EXPECT_THROW(ISonvex::createInstance().addProcessor(process), exceptions::ResourceNotAvailable);
}

/// Plays @p scenario with the first call of the kind refused, then with the second, and so on to the last.
/// @param putBack brings the state back that it begins with
template <class Scenario, class PutBack>
void refuseEach(Call call, Scenario &&scenario, PutBack &&putBack) {
    int refused = 0;
    for (bool failed = true; failed && !testing::Test::HasFailure(); refused += failed ? 1 : 0) {
        SCOPED_TRACE("refused call " + std::to_string(refused + 1));
        {
            const FailingCall refusal(call, refused + 1);
            scenario(refusal);
            failed = refusal.hasFailed();
        }
        putBack();
    }
    std::cout << refused << " calls refused" << std::endl;
    EXPECT_GT(refused, 0) << "there is no such call";
    support::LogRecorder::takeFaults(); // Qt's own line about a thread that it is refused
}

/// As above for whole runs.
void refuseEachOfARun(Call call, const std::function<void(PatientHost &, const FailingCall &)> &scenario) {
    auto host = std::make_unique<PatientHost>();
    refuseEach(
        call, [&](const FailingCall &refusal) { scenario(*host, refusal); },
        [&] {
            dropLastRun();
            host.reset();
            host = std::make_unique<PatientHost>();
        });
    ISonvex::destroy();
}

class RefusedCall : public testing::TestWithParam<Call> {};

TEST_P(RefusedCall, isHeardAndTheNextAttemptWorks) {
    refuseEachOfARun(GetParam(), [](PatientHost &host, const FailingCall &refusal) {
        host.begin();
        EXPECT_TRUE(host.awaitResults(4800, 1024));
        // The host can do without a filter.
        const bool isFilters = GetParam() == Call::compileFilter || GetParam() == Call::setFilter;
        EXPECT_TRUE(!refusal.hasFailed() || (host.warnings() > 0 && host.refusals == (isFilters ? 0 : 1)));
    });
}

INSTANTIATE_TEST_SUITE_P(OfTheSystem, RefusedCall,
                         testing::Values(Call::createCapture, Call::activateCapture, Call::compileFilter,
                                         Call::setFilter, Call::loop, Call::createThread));

TEST(RefusedMemory, thatTheHostsNumbersAskForLeavesTheProcessorsAlive) {
    refuseEachOfARun(Call::allocateLarge, [](PatientHost &host, const FailingCall &refusal) {
        host.begin();
        const auto changeAndAwait = [&](unsigned amount, unsigned order) {
            host.waveforms().setSampleAmount(amount);
            host.spectra().setFftOrder(order);
            return host.awaitResults(amount, std::size_t{1} << (order - 1));
        };
        // A refused order has a line; the host hears nothing else, and sets another one.
        const bool asWanted = host.awaitResults(4800, 1024) && changeAndAwait(9600, 12);
        EXPECT_TRUE(asWanted || (refusal.hasFailed() && changeAndAwait(19200, 13)));
        EXPECT_TRUE(!refusal.hasFailed() || host.refusals == 1 || host.warnings() > 0);
    });
}

TEST(RefusedMemory, forAStreamOnTheHostsThreadChangesNothing) {
    refuseEachOfARun(Call::allocateOnThisThread, [](PatientHost &host, const FailingCall &) { host.addStream(); });
}

TEST(RefusedMemory, forProcessorsOnTheHostsThreadChangesNothing) {
    PatientHost host;
    host.addStream();
    refuseEach(
        Call::allocateOnThisThread, [&](const FailingCall &) { host.addAnalyses(); }, [&] { host.removeAnalyses(); });
    host.addAnalyses();
    refuseEach(
        Call::allocateOnThisThread, [&](const FailingCall &) { host.start(); }, [&] { host.stop(); });
    host.start();
    EXPECT_TRUE(host.awaitResults(4800, 1024));
    ISonvex::destroy();
}

} // namespace
