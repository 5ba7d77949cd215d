#pragma once

/**
 * @file
 * What a file of this folder is compiled for. Each is compiled once per CPU level, with the level's flags and with
 * KERNEL_LEVEL as its name, and puts its kernels into the namespace kernels::KERNEL_LEVEL.
 *
 * Nothing else may leave such a file: an inline function that two levels share would be kept once by the linker, and
 * perhaps in the form that this CPU cannot run. So all helpers are static or in an anonymous namespace, and the
 * standard library's templates stay out.
 */

#ifndef KERNEL_LEVEL
#error "this file is compiled once per CPU level, see CMakeLists.txt"
#endif

#include "kernels/KernelList.h"
#include "kernels/Status.h"

namespace kernels::KERNEL_LEVEL {

#define SONVEX_DECLARE(result, name, parameters, arguments) result name parameters;
SONVEX_LEVEL_KERNELS(SONVEX_DECLARE)
#undef SONVEX_DECLARE

} // namespace kernels::KERNEL_LEVEL
