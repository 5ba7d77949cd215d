#pragma once

#include <string>
#include <utility>
#include <vector>

#include <sonvex/IVectorData.h>

/// A result with these y values and one x value.
class Values : public sonvex::IVectorData {
public:
    explicit Values(std::vector<double> newY) : y(std::move(newY)) {}

    std::vector<double> getX() const override { return {0.0}; }
    std::vector<double> getY() const override { return y; }
    std::string toString() const override { return {}; }

private:
    std::vector<double> y;
};
