#include "pcapplus/CapturingAdapter.h"

#include "core/facts/AdapterFacts.h"
#include "pcapplus/UntaggedFrame.h"

namespace pcapplus {

namespace {

thread_local facts::AdapterFacts *capturing = nullptr;
thread_local int frameTag = UntaggedFrame::untagged;

} // namespace

CapturingAdapter::CapturingAdapter(facts::AdapterFacts &facts) {
    capturing = &facts;
}

CapturingAdapter::~CapturingAdapter() {
    capturing = nullptr;
    frameTag = UntaggedFrame::untagged;
}

void CapturingAdapter::countFrameOfNoStream() {
    if (capturing != nullptr) {
        capturing->frameOfNoStream();
    }
}

void CapturingAdapter::setTag(int tag) {
    frameTag = tag;
}

int CapturingAdapter::getTag() {
    return frameTag;
}

} // namespace pcapplus
