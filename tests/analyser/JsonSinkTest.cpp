#include "analyser/JsonSink.h"

#include <cmath>
#include <limits>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include "Values.h"

#include "analyser/Output.h"

namespace {

/// The one object that a sink has written for the result.
QJsonObject writtenBy(const analyser::Analysis &analysis, const Values &values) {
    QTemporaryFile file;
    EXPECT_TRUE(file.open());
    analyser::Output output(file.fileName().toStdString());
    const analyser::MonitorOptions options;
    analyser::JsonSink(output, options).result({analysis, 7, values});
    const QByteArray line = file.readAll();
    EXPECT_EQ(line.indexOf('\n'), line.size() - 1) << "one line per object";
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(line, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
    return document.object();
}

TEST(JsonSink, writesNumbersThatReadBackExactly) {
    using Limits = std::numeric_limits<double>;
    const std::vector<double> numbers{
        0.1, -1.0, 32767 / 32768., Limits::max(), Limits::denorm_min(), 1 + Limits::epsilon()};
    const auto y = writtenBy({}, Values(numbers)).value(QStringLiteral("y")).toArray();
    ASSERT_EQ(y.size(), static_cast<int>(numbers.size()));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        EXPECT_EQ(y.at(static_cast<int>(i)).toDouble(), numbers[i]);
    }
}

TEST(JsonSink, staysReadableWhateverTheResultHolds) {
    analyser::Analysis analysis;
    analysis.name = "a\"b\\c\n\x01\x7f\xc3\xa4\xff";
    const auto object = writtenBy(analysis, Values({std::nan(""), -std::numeric_limits<double>::infinity()}));
    EXPECT_EQ(object.value(QStringLiteral("name")).toString().toStdString(), "a\"b\\c\n\x01\x7f\xc3\xa4\xef\xbf\xbd");
    EXPECT_EQ(object.value(QStringLiteral("sequence")).toInt(), 7);
    EXPECT_TRUE(object.value(QStringLiteral("y")).toArray().at(1).isNull());
    EXPECT_TRUE(writtenBy(analysis, Values({})).value(QStringLiteral("y")).isArray());
}

TEST(JsonSink, namesLevelsAndBins) {
    analyser::Analysis analysis;
    analysis.options.kind = analyser::AnalysisKind::levels;
    const double silent = -std::numeric_limits<double>::infinity();
    const auto levels = writtenBy(analysis, Values({-1, -2, -3, -4, -5, silent, -7}));
    const auto names = levels.value(QStringLiteral("names")).toArray();
    EXPECT_EQ(names.size(), 7);
    EXPECT_EQ(names.at(3).toString(), QStringLiteral("dBC SPL slow"));
    EXPECT_EQ(names.at(6).toString(), QStringLiteral("dBFS"));
    EXPECT_TRUE(levels.value(QStringLiteral("y")).toArray().at(5).isNull());
    EXPECT_FALSE(levels.contains(QStringLiteral("x")));

    analysis.options.kind = analyser::AnalysisKind::spectrum;
    analysis.options.order = 14;
    analysis.options.amount = 16384;
    const auto spectrum = writtenBy(analysis, Values({0.25}));
    EXPECT_EQ(spectrum.value(QStringLiteral("type")).toString(), QStringLiteral("spectrum"));
    EXPECT_EQ(spectrum.value(QStringLiteral("order")).toInt(), 14);
    EXPECT_EQ(spectrum.value(QStringLiteral("binWidth")).toDouble(), 48000.0 / 16384);
    EXPECT_EQ(spectrum.value(QStringLiteral("y")).toArray().at(0).toDouble(), 0.25);
}

} // namespace
