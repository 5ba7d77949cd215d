#include "core/data/VectorData.h"

#include <ostream>
#include <sstream>
#include <utility>

namespace sonvex {

namespace {

void print(std::ostream &out, const std::vector<double> &series) {
    const char *separator = "";
    for (const double value : series) {
        out << separator << value;
        separator = ",";
    }
}

} // namespace

VectorData::VectorData() : VectorData({0.0}, {0.0}) {}

VectorData::VectorData(std::vector<double> x, std::vector<double> y)
    : DeliveryData("Vector (x,y)"), x(std::move(x)), y(std::move(y)) {}

std::vector<double> VectorData::getX() const {
    return x;
}

std::vector<double> VectorData::getY() const {
    return y;
}

std::string VectorData::toString() const {
    std::ostringstream out;
    out << DataObjectBase::toString() << "\n\tx: ";
    print(out, x);
    out << "\n\ty: ";
    print(out, y);
    return out.str();
}

void VectorData::setX(const std::vector<double> &values) {
    x = values;
}

void VectorData::setY(const std::vector<double> &values) {
    y = values;
}

} // namespace sonvex
