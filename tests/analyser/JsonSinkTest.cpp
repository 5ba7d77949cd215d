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

} // namespace
