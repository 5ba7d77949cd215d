#include "core/data/VectorData.h"

#include <locale>
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
    : DeliveryData("Vector (x,y)"), x(new Series(std::move(x))), y(new Series(std::move(y))) {}

std::vector<double> VectorData::getX() const {
    return x->values;
}

std::vector<double> VectorData::getY() const {
    return y->values;
}

std::string VectorData::toString() const {
    std::ostringstream out;
    out.imbue(std::locale::classic()); // whatever the host's locale says of numbers
    out << DataObjectBase::toString() << "\n\tx: ";
    print(out, x->values);
    out << "\n\ty: ";
    print(out, y->values);
    return out.str();
}

void VectorData::setX(std::vector<double> values) {
    replace(x, std::move(values));
}

void VectorData::setY(std::vector<double> values) {
    replace(y, std::move(values));
}

std::vector<double> VectorData::takeY() {
    // Acquired, so that whoever shared it has read its last value before the next one is written.
    return y->ref.loadAcquire() == 1 ? std::exchange(y->values, {}) : std::vector<double>();
}

void VectorData::replace(Shared &series, std::vector<double> values) {
    if (series->ref.loadAcquire() == 1) {
        series->values = std::move(values);
    } else {
        series = new Series(std::move(values));
    }
}

VectorData::Series::Series(std::vector<double> values) : values(std::move(values)) {}

} // namespace sonvex
