#include "common/Text.h"

#include <algorithm>
#include <array>
#include <charconv>

#include <QByteArray>
#include <QString>

namespace text {

namespace {

std::string escaped(char character) {
    constexpr std::string_view digits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(character);
    return {'\\', 'u', '0', '0', digits[byte >> 4U], digits[byte & 15U]};
}

} // namespace

bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7f;
}

std::string number(double value) {
    std::array<char, 32> buffer{};
    return {buffer.data(), std::to_chars(buffer.begin(), buffer.end(), value).ptr};
}

std::string fixed(double value, int decimals) {
    std::array<char, 400> buffer{};
    return {buffer.data(), std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::fixed, decimals).ptr};
}

std::string quoted(std::string_view value) {
    const QByteArray utf8 = QString::fromUtf8(value.data(), static_cast<int>(value.size())).toUtf8();
    std::string result = "\"";
    for (const char character : utf8) {
        if (character == '"' || character == '\\') {
            result += '\\';
        }
        result += isControl(character) ? escaped(character) : std::string(1, character);
    }
    return result + '"';
}

std::string_view cut(std::string_view value, std::size_t columns) {
    std::size_t end = 0;
    for (; end < value.size(); ++end) {
        const bool continuesCharacter = (static_cast<unsigned char>(value[end]) & 0xc0U) == 0x80U;
        if (!continuesCharacter && columns-- == 0) {
            break;
        }
    }
    return value.substr(0, end);
}

std::vector<std::string> wrapped(std::string_view value, std::size_t columns) {
    std::vector<std::string> lines;
    do {
        std::string_view line = cut(value, std::max<std::size_t>(columns, 1));
        const auto blank = line.rfind(' ');
        if (line.size() < value.size() && value[line.size()] != ' ' && blank != std::string_view::npos && blank > 0) {
            line = line.substr(0, blank);
        }
        lines.emplace_back(line);
        value.remove_prefix(line.size());
        value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    } while (!value.empty());
    return lines;
}

std::vector<std::string> split(const std::string &value, char separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + 1) {
        end = value.find(separator, begin);
        parts.push_back(value.substr(begin, end - begin));
    }
    return parts;
}

std::string counted(std::uint64_t amount, const std::string &noun) {
    return std::to_string(amount) + ' ' + noun + (amount == 1 ? "" : "s");
}

} // namespace text
