#include "core/facts/ReceptionFacts.h"

#include <sonvex/exceptions.h>

#include "core/logging/Log.h"

namespace facts {

namespace {

template <class Facts>
std::shared_ptr<Facts> findOrMake(std::map<std::string, std::shared_ptr<Facts>> &all, const std::string &name) {
    const auto entry = all.find(name);
    return entry != all.end() ? entry->second : all.emplace(name, std::make_shared<Facts>()).first->second;
}

template <class Facts>
const Facts &find(const std::map<std::string, std::shared_ptr<Facts>> &all, const std::string &name,
                  const char *context, const char *refusal) {
    const auto entry = all.find(name);
    if (entry == all.end()) {
        logging::refuse<exceptions::ResourceNotAvailable>(context, refusal + name);
    }
    return *entry->second;
}

} // namespace

std::shared_ptr<StreamFacts> ReceptionFacts::ofStream(const std::string &mac) {
    return findOrMake(streams, mac);
}

std::shared_ptr<AdapterFacts> ReceptionFacts::ofAdapter(const std::string &systemName) {
    return findOrMake(adapters, systemName);
}

const StreamFacts &ReceptionFacts::getStreamFacts(const std::string &mac) const {
    return find(streams, mac, "facts::ReceptionFacts::getStreamFacts", "No stream was ever added for MAC address: ");
}

const AdapterFacts &ReceptionFacts::getAdapterFacts(const std::string &systemName) const {
    return find(adapters, systemName, "facts::ReceptionFacts::getAdapterFacts",
                "No stream was ever added on network device: ");
}

} // namespace facts
