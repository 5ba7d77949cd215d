#pragma once

#include <string>
#include <vector>

namespace analyser {

/**
 * Draws a curve into character cells of 2 x 4 braille dots. Samples that share a column of dots are drawn as the line
 * from the lowest to the highest of them, joined with the sample before.
 * @param scale the value at the upper edge; its negative is at the lower. Values beyond stick to the edge.
 * @param marks drawn as single dots, the highest of those that share a column
 * @return @p rows lines of @p columns characters, the uppermost first
 */
std::vector<std::string> brailleCurve(const std::vector<double> &values, double scale, std::size_t columns,
                                      std::size_t rows, const std::vector<double> &marks = {});

} // namespace analyser
