#pragma once

#include <memory>

#include <sonvex/IMeteringDataSource.h>

#include "core/data/ChannelData.h"
#include "core/metering/CallbackManager.h"

namespace sonvex {

/**
 * The host's tap on a processor. It owns the bound function and outlives the processor.
 * Binding and delivery run on the host's thread.
 */
class MeteringDataSource : public IMeteringDataSource, public DeliveryData {
public:
    explicit MeteringDataSource(std::string name);
    ~MeteringDataSource() override;

    MeteringDataSource(const MeteringDataSource &) = delete;
    MeteringDataSource &operator=(const MeteringDataSource &) = delete;

    bool bindChannelCallback(std::function<void(IChannelData &)> callback) override;
    std::string toString() const override;

    /// The function that delivers to whatever is bound at the time of the call; valid as long as this source.
    std::function<void(ChannelData &)> getChannelCallback();

private:
    static constexpr unsigned char channelCallback = 1;

    std::unique_ptr<manager::CallbackManager<ChannelData>> callbackManager;
};

} // namespace sonvex
