#pragma once

#include <functional>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "kernels/kernels.h"

/// Kernel memory of a benchmark, 64-byte aligned.
struct KernelMemoryDeleter {
    void operator()(void *memory) const { ippFree(memory); }
};
template <class Element>
using KernelMemory = std::unique_ptr<Element[], KernelMemoryDeleter>;

template <class Element>
KernelMemory<Element> allocateKernelMemory(std::size_t length) {
    return KernelMemory<Element>(static_cast<Element *>(ippMalloc(static_cast<int>(length * sizeof(Element)))));
}

/// Registers "table/series/case", measured with a level forced; see registerAtAllLevels.
void registerAtLevel(const std::string &table, const std::string &series, int level, const std::string &row,
                     const std::function<std::function<void()>()> &make, std::size_t bytes = 0);

/**
 * Registers "table/level/case" for every level of this CPU, the highest first. make() is called with the level forced,
 * once before the level's first run; what it returns is measured, with the level forced.
 */
void registerAtAllLevels(const std::string &table, const std::string &row,
                         const std::function<std::function<void()>()> &make, std::size_t bytes = 0);

/// Registers "table/peer/case".
void registerPeer(const std::string &table, const std::string &peer, const std::string &row,
                  const std::function<void()> &run, std::size_t bytes = 0);
