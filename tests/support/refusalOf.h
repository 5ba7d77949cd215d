#pragma once

#include <stdexcept>

namespace support {

/// The refusal that a call ends in; other exceptions pass.
template <class Exception, class Call>
Exception refusalOf(const Call &call) {
    try {
        call();
    } catch (const Exception &refusal) {
        return refusal;
    }
    throw std::logic_error("not refused");
}

} // namespace support
