#pragma once

namespace fuzz {

/// How many frames of all inputs so far were good for more than a refusal; without any, nothing is tested.
unsigned long long framesTaken();

} // namespace fuzz
