#pragma once

#include <map>
#include <memory>
#include <string>

#include "core/facts/AdapterFacts.h"
#include "core/facts/StreamFacts.h"

namespace facts {

/// All facts, for as long as the library: a host may hold references to them from run to run. Host's thread only.
class ReceptionFacts {
public:
    /// Makes them at the first call for a name. The receiver of the frames shares them and lets them begin.
    std::shared_ptr<StreamFacts> ofStream(const std::string &mac);
    std::shared_ptr<AdapterFacts> ofAdapter(const std::string &systemName);

    /// @throws exceptions::ResourceNotAvailable for one that there are no facts of
    const StreamFacts &getStreamFacts(const std::string &mac) const;
    const AdapterFacts &getAdapterFacts(const std::string &systemName) const;

private:
    std::map<std::string, std::shared_ptr<StreamFacts>> streams;
    std::map<std::string, std::shared_ptr<AdapterFacts>> adapters;
};

} // namespace facts
