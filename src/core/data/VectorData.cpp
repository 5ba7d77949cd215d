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

std::shared_ptr<const std::vector<double>> share(std::vector<double> &&series) {
    return std::make_shared<const std::vector<double>>(std::move(series));
}

} // namespace

VectorData::VectorData() : VectorData({0.0}, {0.0}) {}

VectorData::VectorData(std::vector<double> x, std::vector<double> y)
    : DeliveryData("Vector (x,y)"), x(share(std::move(x))), y(share(std::move(y))) {}

std::vector<double> VectorData::getX() const {
    return *x;
}

std::vector<double> VectorData::getY() const {
    return *y;
}

std::string VectorData::toString() const {
    std::ostringstream out;
    out << DataObjectBase::toString() << "\n\tx: ";
    print(out, *x);
    out << "\n\ty: ";
    print(out, *y);
    return out.str();
}

void VectorData::setX(std::vector<double> values) {
    x = share(std::move(values));
}

void VectorData::setY(std::vector<double> values) {
    y = share(std::move(values));
}

} // namespace sonvex
