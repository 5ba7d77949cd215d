#include "support/Churn.h"

#include <stdexcept>

namespace support {

using namespace sonvex::iprocess;

void Churn::changeConfiguration(ISampleProcessorConfigBase &config) {
    auto *const spectrum = dynamic_cast<ISpectrumConfig *>(&config);
    switch (below(spectrum == nullptr ? 2 : 3)) {
    case 0:
        config.setRefreshRate(any ? 1 + below(3) : 20 + below(30));
        config.setClockType(below(2) == 0 ? "Internal clock" : "External clock");
        break;
    case 1:
        config.setSampleAmount(any ? below(300) : 1 + below(4800));
        break;
    default:
        spectrum->setFftOrder(any ? below(10) : 8 + below(6));
        spectrum->setMovingAverageActive(below(2) == 0);
        spectrum->setMovingAverageWindowSize(any ? below(9) : 1 + below(20));
        spectrum->setMovingAverageWindowLength(10 * below(9));
    }
}

void Churn::change(ISampleProcessorConfigBase &config, sonvex::IProcessConfiguration &process,
                   sonvex::ihandles::IProcessorHandle &handle) {
    // Levels need the external clock, and six blocks of it.
    const bool configurable = any || dynamic_cast<ISoundLevelValueConfig *>(&config) == nullptr;
    switch (below(8)) {
    case 0:
        if (!removes) {
            break;
        }
        ISonvex::createInstance().removeProcessor(handle);
        if (&ISonvex::createInstance().addProcessor(process) != &handle) {
            throw std::logic_error("a processor that comes back has another handle");
        }
        handle.start();
        break;
    case 1:
    case 2:
        handle.stop();
        if (!any || below(2) == 0) {
            handle.start();
        }
        break;
    default:
        if (configurable) {
            changeConfiguration(config);
        }
    }
}

} // namespace support
