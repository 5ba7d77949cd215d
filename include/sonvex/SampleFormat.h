#pragma once

namespace sonvex {

/// How the samples of AVTP audio frames are written, all of them big-endian. Full scale is 1.0 for each: integers are
/// scaled by their width, whatever amount of their bits the device uses.
enum class SampleFormat { Int16, Int24, Int32, Float32 };

} // namespace sonvex
