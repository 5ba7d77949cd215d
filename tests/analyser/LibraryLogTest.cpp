#include "analyser/LibraryLog.h"

#include <array>
#include <thread>

#include <unistd.h>

#include <QTemporaryFile>

#include <gtest/gtest.h>

namespace {

TEST(LineWriter, leavesOutAndCountsWhatAStalledReaderDoesNotTake) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    const common::FileDescriptor reader(ends[0]);
    analyser::LineWriter writer{common::FileDescriptor(ends[1])};
    constexpr std::size_t amount = 30'000; // more than a pipe holds
    for (std::size_t i = 0; i < amount; ++i) {
        writer.write("line\n");
    }
    std::string taken(amount * 5, ' ');
    taken.resize(static_cast<std::size_t>(::read(ends[0], taken.data(), taken.size())));
    writer.write("last\n");
    std::string rest(100, ' ');
    rest.resize(static_cast<std::size_t>(::read(ends[0], rest.data(), rest.size())));
    EXPECT_EQ(rest, std::to_string(amount - taken.size() / 5) + " lines left out\nlast\n");
}

TEST(LibraryLog, writesEveryLineToTheFileThoseBeforeItWasNamedToo) {
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    analyser::LibraryLog log;
    log.take(QtWarningMsg, QStringLiteral("early"));
    log.configure({false, file.fileName().toStdString()});
    std::thread([&] { log.take(QtDebugMsg, QStringLiteral("late")); }).join();

    const auto lines = file.readAll().split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].endsWith("Z WARNING early")) << lines[0].toStdString();
    EXPECT_TRUE(lines[1].endsWith("Z DEBUG late")) << lines[1].toStdString();
    EXPECT_EQ(log.failure(), "");
}

} // namespace
