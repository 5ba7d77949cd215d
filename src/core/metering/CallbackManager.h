#pragma once

#include <functional>
#include <map>

#include "core/data/StringOverloadBase.h"

namespace manager {

/// Callbacks by number, from a first to a last one. Bound and called on the host's thread alone, so without a lock.
template <class Data>
class CallbackManager : public StringOverloadBase {
public:
    explicit CallbackManager(std::string name);
    ~CallbackManager() override;

    CallbackManager(const CallbackManager &) = delete;
    CallbackManager &operator=(const CallbackManager &) = delete;

    /// Binds @p callback for good; a number that is taken keeps its first callback, with true as the answer.
    /// @return false, with two warnings, for a number outside the range
    bool bindCallback(std::function<void(Data &)> callback, unsigned char number);

    /// Hands @p data to the callback bound to @p number, or logs that nobody takes it.
    void deliver(Data &data, unsigned char number) const;

    std::string toString() const override;

    unsigned char getLastCallbackNumber() const { return lastCallbackNumber; }

private:
    bool isCallbackNumberValid(unsigned char number) const;
    void warnAboutNumber(const std::string &context) const;

    std::string name;
    unsigned char firstCallbackNumber = 1;
    unsigned char lastCallbackNumber = 1;
    std::map<unsigned char, std::function<void(Data &)>> boundCallbacks;
};

} // namespace manager
