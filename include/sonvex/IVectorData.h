#pragma once

#include <string>
#include <vector>

#include <sonvex/export.h>

namespace sonvex {

/// Two series of values. What they mean, and whether their lengths agree, is the producer's matter.
class SONVEX_EXPORT IVectorData {
public:
    IVectorData();
    IVectorData(const IVectorData &);
    virtual ~IVectorData();
    IVectorData &operator=(const IVectorData &);

    /// A copy of the horizontal axis; each call allocates.
    virtual std::vector<double> getX() const = 0;
    /// A copy of the vertical axis; each call allocates.
    virtual std::vector<double> getY() const = 0;
    /// The name and both series as text, with six significant digits.
    virtual std::string toString() const = 0;
};

} // namespace sonvex
