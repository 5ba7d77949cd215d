#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// How values become text, whatever the locale.
namespace text {

/// The shortest text that reads back as exactly this number.
std::string number(double value);
/// With @p decimals digits after the point.
std::string fixed(double value, int decimals);
/// As a JSON string with its quotes. What is no UTF-8 becomes the replacement character.
/// Whether it is no character for the eye, in the range of a byte.
bool isControl(char character);
std::string quoted(std::string_view value);
/// The first @p columns characters, each taken as one column wide.
std::string_view cut(std::string_view value, std::size_t columns);
/// In lines of at most @p columns characters, broken at blanks where there are any.
std::vector<std::string> wrapped(std::string_view value, std::size_t columns);
/// The parts between separators, at least one.
std::vector<std::string> split(const std::string &value, char separator);
/// "1 packet", "2 packets".
std::string counted(std::uint64_t amount, const std::string &noun);

} // namespace text
