#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/LogRecorder.h"

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

/// Expects a call to be refused with @p text, and to log nothing but that, as a warning that begins with @p context.
template <class Exception, class Call>
void expectRefusal(LogRecorder &log, const Call &call, const std::string &context, const std::string &text) {
    log.clear();
    EXPECT_EQ(refusalOf<Exception>(call).what(), text);
    EXPECT_EQ(log.lines(), std::vector<std::string>{"W " + context + " \"" + text + "\""});
}

} // namespace support
