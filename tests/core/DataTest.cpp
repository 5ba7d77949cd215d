#include <locale>

#include <QDebug>

#include <gtest/gtest.h>

#include "core/data/ChannelData.h"

namespace {

using sonvex::ChannelData;
using sonvex::VectorData;

TEST(VectorData, printsNumbersWithSixSignificantDigits) {
    const std::vector<std::pair<double, std::string>> cases = {
        {0.0, "0"},         {-2.5, "-2.5"},     {1.0 / 3, "0.333333"}, {0.0001, "0.0001"}, {0.00001, "1e-05"},
        {100000, "100000"}, {999999, "999999"}, {999999.5, "1e+06"},   {1000000, "1e+06"}, {1234567, "1.23457e+06"}};
    for (const auto &[value, text] : cases) {
        EXPECT_EQ(VectorData({value}, {value}).toString(), "[Vector (x,y)]\n\tx: " + text + "\n\ty: " + text);
    }
}

TEST(VectorData, printsTheSameNumbersInEveryLocale) {
    struct GroupedWithComma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    const std::locale earlier = std::locale::global(std::locale(std::locale::classic(), new GroupedWithComma));
    const std::string text = VectorData({1234.5}, {0.25}).toString();
    std::locale::global(earlier);
    EXPECT_EQ(text, "[Vector (x,y)]\n\tx: 1234.5\n\ty: 0.25");
}

TEST(ChannelData, printsItsNameAndBothSeries) {
    EXPECT_EQ(ChannelData().toString(), "[DummyChannel]\n[Vector (x,y)]\n\tx: 0\n\ty: 0");
    EXPECT_EQ(ChannelData("ch1", VectorData({1, 2.5}, {0.125, 1000000})).toString(),
              "[ch1]\n[Vector (x,y)]\n\tx: 1,2.5\n\ty: 0.125,1e+06");
    EXPECT_EQ(ChannelData("", VectorData({}, {})).toString(), "[]\n[Vector (x,y)]\n\tx: \n\ty: ");
}

TEST(StringOverloadBase, printsBareAndLeavesTheStreamsSettingsAlone) {
    const sonvex::DeliveryData object("a \"b\"");
    const QString text = QStringLiteral("text");
    QString quoted;
    QDebug(&quoted) << text << object << text;
    EXPECT_EQ(quoted.trimmed(), QStringLiteral("\"text\" [a \"b\"] \"text\""));
    QString bare;
    QDebug(&bare).noquote().nospace() << text << object << text;
    EXPECT_EQ(bare, QStringLiteral("text[a \"b\"]text"));
}

} // namespace
