#include "core/logging/HeldLines.h"

#include <new>

#include "core/logging/Log.h"

namespace logging {

namespace {

/// The thread's outermost object. A plain pointer: a thread's end has nothing to do in a library that may be gone.
thread_local HeldLines *holder = nullptr;

} // namespace

HeldLines::HeldLines() : outermost(holder == nullptr) {
    if (outermost) {
        holder = this;
    }
}

HeldLines::~HeldLines() {
    if (!outermost) {
        return;
    }
    holder = nullptr;
    for (auto &[level, line] : lines) {
        try {
            detail::write(level, std::move(line));
        } catch (const std::bad_alloc &) { // a line that finds no memory is lost, here as everywhere
        }
    }
}

bool HeldLines::keep(QtMsgType level, QString &line) {
    if (holder == nullptr) {
        return false;
    }
    holder->lines.emplace_back(level, std::move(line));
    return true;
}

} // namespace logging
