#include "analyser/files/JsonFile.h"

#include <cmath>
#include <limits>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include "analyser/output/Output.h"
#include "common/Text.h"
#include "monitoring/results.h"

namespace {

/// The one object that is written for the result.
QJsonObject writtenBy(const std::vector<double> &values) {
    QTemporaryFile file;
    EXPECT_TRUE(file.open());
    const monitoring::SessionSettings settings;
    analyser::JsonFile(std::make_shared<analyser::Output>(file.fileName().toStdString()), settings)
        .result(support::makeResult(support::makeAnalysis("waveform", "1:48"), values));
    const QByteArray line = file.readAll();
    EXPECT_EQ(line.indexOf('\n'), line.size() - 1) << "one line per object";
    QJsonParseError error;
    const auto document = QJsonDocument::fromJson(line, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << line.toStdString();
    return document.object();
}

TEST(JsonFile, writesNumbersThatReadBackExactly) {
    using Limits = std::numeric_limits<double>;
    const std::vector<double> numbers{
        0.1, -1.0, 32767 / 32768., Limits::max(), Limits::denorm_min(), 1 + Limits::epsilon()};
    const auto y = writtenBy(numbers).value(QStringLiteral("y")).toArray();
    ASSERT_EQ(y.size(), static_cast<int>(numbers.size()));
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        EXPECT_EQ(y.at(static_cast<int>(i)).toDouble(), numbers[i]);
    }
}

TEST(JsonFile, staysReadableWhateverTheResultHolds) {
    const auto object = writtenBy({std::nan(""), -std::numeric_limits<double>::infinity()});
    EXPECT_EQ(object.value(QStringLiteral("name")).toString(), QStringLiteral("waveform_020000000001_ch1"));
    EXPECT_EQ(object.value(QStringLiteral("sequence")).toInt(), 7);
    EXPECT_TRUE(object.value(QStringLiteral("y")).toArray().at(1).isNull());
    EXPECT_TRUE(writtenBy({}).value(QStringLiteral("y")).isArray());
    EXPECT_EQ(text::quoted("a\"b\\c\n\x01\x7f\xc3\xa4\xff"),
              "\"a\\\"b\\\\c\\u000a\\u0001\\u007f\xc3\xa4\xef\xbf\xbd\"");
}

} // namespace
