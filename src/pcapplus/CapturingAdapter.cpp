#include "pcapplus/CapturingAdapter.h"

#include "core/facts/AdapterFacts.h"

namespace pcapplus {

namespace {

thread_local facts::AdapterFacts *capturing = nullptr;

} // namespace

CapturingAdapter::CapturingAdapter(facts::AdapterFacts &facts) {
    capturing = &facts;
}

CapturingAdapter::~CapturingAdapter() {
    capturing = nullptr;
}

void CapturingAdapter::countFrameOfNoStream() {
    if (capturing != nullptr) {
        capturing->frameOfNoStream();
    }
}

} // namespace pcapplus
