#include "support/SparedMemory.h"

namespace support {

namespace {

thread_local int nesting = 0;

} // namespace

SparedMemory::SparedMemory() {
    ++nesting;
}

SparedMemory::~SparedMemory() {
    --nesting;
}

bool SparedMemory::isActive() {
    return nesting > 0;
}

} // namespace support
