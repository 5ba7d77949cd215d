#pragma once

#include "core/data/StringOverloadBase.h"

namespace sonvex {

/// A printable object with a name.
class DataObjectBase : public StringOverloadBase {
public:
    explicit DataObjectBase(std::string name);

    /// The name in brackets.
    std::string toString() const override;
    virtual std::string getName() const;

private:
    std::string name;
};

} // namespace sonvex
