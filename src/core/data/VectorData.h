#pragma once

#include <vector>

#include <sonvex/IVectorData.h>

#include "core/data/DeliveryData.h"

namespace sonvex {

/// Two series of values; a plain value. Nothing ties their lengths together.
class VectorData : public DeliveryData, public IVectorData {
public:
    /// One element of 0.0 in each series.
    VectorData();
    VectorData(std::vector<double> x, std::vector<double> y);

    std::vector<double> getX() const override;
    std::vector<double> getY() const override;
    std::string toString() const override;

    void setX(const std::vector<double> &values);
    void setY(const std::vector<double> &values);

private:
    std::vector<double> x;
    std::vector<double> y;
};

} // namespace sonvex
