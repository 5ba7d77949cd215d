#pragma once

#include <string>

class QDebug;

/// Root of everything that can print itself.
class StringOverloadBase {
public:
    virtual ~StringOverloadBase() = default;

    virtual std::string toString() const = 0;

protected:
    StringOverloadBase() = default;
    StringOverloadBase(const StringOverloadBase &) = default;
    StringOverloadBase &operator=(const StringOverloadBase &) = default;
};

/// Writes toString() as one bare text; the stream's settings stay as they were.
QDebug operator<<(QDebug stream, const StringOverloadBase &object);
