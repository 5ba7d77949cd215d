#pragma once

#include <vector>

#include <QSharedData>

#include <sonvex/IVectorData.h>

#include "core/data/DeliveryData.h"

namespace sonvex {

/**
 * Two series of values; a plain value. Nothing ties their lengths together. Copies share the series, which never change
 * once they are set, so that a result crosses threads and reaches many receivers for the price of a reference count.
 */
class VectorData : public DeliveryData, public IVectorData {
public:
    /// One element of 0.0 in each series.
    VectorData();
    VectorData(std::vector<double> x, std::vector<double> y);
    VectorData(const VectorData &) = default; // and no move, which would leave an object without series
    VectorData &operator=(const VectorData &) = default;

    std::vector<double> getX() const override;
    std::vector<double> getY() const override;
    std::string toString() const override;

    void setX(std::vector<double> values);
    void setY(std::vector<double> values);
    /// The storage of y for the next values, or an empty vector while a copy shares it. Leaves y empty or as it was.
    std::vector<double> takeY();

private:
    struct Series : QSharedData {
        explicit Series(std::vector<double> values);
        std::vector<double> values;
    };
    using Shared = QExplicitlySharedDataPointer<Series>;

    static void replace(Shared &series, std::vector<double> values);

    Shared x;
    Shared y;
};

} // namespace sonvex
