#pragma once

#include <string>

#include <sonvex/IBaseMessage.h>
#include <sonvex/export.h>

namespace sonvex::imessages {

/// A status text of a capture. It stays within the library: no receiver of a host gets one.
class SONVEX_EXPORT IStatusMessage : public IBaseMessage {
public:
    IStatusMessage();
    IStatusMessage(const IStatusMessage &);
    ~IStatusMessage() override;
    IStatusMessage &operator=(const IStatusMessage &);
    IStatusMessage(IStatusMessage &&) noexcept;
    IStatusMessage &operator=(IStatusMessage &&) noexcept;

    virtual std::string getMessage() const = 0;
};

} // namespace sonvex::imessages
