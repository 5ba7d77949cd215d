#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "monitoring/analyses/Analysis.h"

namespace monitoring {

class AnalysisValue;

/// What a command line needs to know of a kind of analysis.
struct AnalysisKind {
    const char *name;   ///< of the option too
    const char *plural; ///< for the eye
    const char *form;   ///< of the option's value
    const char *help;
    /// @throws common::Refusal for a value that can't be followed
    std::shared_ptr<const Analysis> (*parse)(const AnalysisValue &value);
};

/// In the order in which analyses are shown.
const std::vector<const AnalysisKind *> &analysisKinds();

/// A value of an option, as CHANNEL:…[@STREAM], and what it is read with.
class AnalysisValue {
public:
    /// What all analyses of a command line share.
    struct Frame {
        const std::vector<StreamSettings> &streams;
        ClockSettings clock;
    };

    AnalysisValue(const AnalysisKind &kind, const std::string &text, const Frame &frame);

    /// The parts between colons: the channel, and what the kind has behind it. @throws common::Refusal unless there are
    /// as many as one of @p amounts
    const std::vector<std::string> &parts(std::initializer_list<std::size_t> amounts) const;
    /// "--levels channel", for the refusal of a number.
    std::string numberTitle(const char *number) const;
    /// The first part. @throws common::Refusal if the stream has no such channel
    Analysis::Channel channel() const;
    const ClockSettings &clock() const { return frame.clock; }
    /// @param text what is wrong with the value
    [[noreturn]] void refuse(const std::string &text) const;

private:
    const AnalysisKind &kind;
    std::string title; ///< "--levels '0@…'"
    std::string address;
    std::vector<std::string> split;
    const Frame &frame;
};

/**
 * Reads the values of all kinds' options.
 * @param valuesOf gives those of an option
 * @return in the order of the kinds
 * @throws common::Refusal for values that can't be followed, and for two of a kind on a channel
 */
Analyses parseAnalyses(const std::function<std::vector<std::string>(const char *option)> &valuesOf,
                       const AnalysisValue::Frame &frame);

} // namespace monitoring
