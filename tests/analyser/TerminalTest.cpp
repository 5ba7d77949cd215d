#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstring>
#include <functional>
#include <future>
#include <sstream>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "support/Program.h"
#include "support/Terminal.h"

// The live view, as on a terminal that a user sits at.
namespace {

using support::Terminal;
using Arguments = std::vector<std::string>;

constexpr char entering[] = "\x1b[?1049h";
constexpr char leaving[] = "\x1b[?1049l";
constexpr char frameStart[] = "\x1b[H";
constexpr char frameEnd[] = "\x1b[J";

Arguments monitor(const Arguments &more = {}, const std::string &amount = "480") {
    Arguments arguments = {"monitor", "--device", "lo", "--stream", "020000000001", "--waveform", "0:" + amount};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
}

/// How many characters of UTF-8 stand before the sequence that ends the line.
std::ptrdiff_t charactersOf(const std::string &line) {
    return std::count_if(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(line.find('\x1b')),
                         [](char part) { return (static_cast<unsigned char>(part) & 0xc0U) != 0x80U; });
}

std::size_t last(const Terminal &terminal, const char *part) {
    const auto position = terminal.shown().rfind(part);
    return position == std::string::npos ? 0 : position + 1;
}

/// The lines of the newest whole picture on the screen; none while it isn't entered.
std::vector<std::string> picture(const Terminal &terminal) {
    std::vector<std::string> lines;
    const std::string screen = terminal.shown().substr(std::max(last(terminal, entering), last(terminal, leaving)));
    const auto end = screen.rfind(frameEnd);
    if (end != std::string::npos) {
        const auto start = screen.rfind(frameStart, end) + std::strlen(frameStart);
        std::istringstream text(screen.substr(start, end - start));
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
    }
    return lines;
}

std::function<bool()> shows(const Terminal &terminal, const std::string &part) {
    return [&terminal, part] {
        const auto lines = picture(terminal);
        return std::any_of(lines.begin(), lines.end(),
                           [&](const std::string &line) { return line.find(part) != std::string::npos; });
    };
}

bool echoes(const Terminal &terminal) {
    return (terminal.modes().c_lflag & ECHO) != 0;
}

void expectLeft(const Terminal &terminal, const termios &before) {
    const termios after = terminal.modes();
    EXPECT_EQ(after.c_iflag, before.c_iflag);
    EXPECT_EQ(after.c_oflag, before.c_oflag);
    EXPECT_EQ(after.c_cflag, before.c_cflag);
    EXPECT_EQ(after.c_lflag, before.c_lflag);
    EXPECT_EQ(std::memcmp(after.c_cc, before.c_cc, sizeof before.c_cc), 0);
    EXPECT_GT(last(terminal, leaving), last(terminal, entering));
    EXPECT_GT(last(terminal, "\x1b[?25h"), last(terminal, "\x1b[?25l")) << "no cursor";
}

TEST(LiveView, leavesTheTerminalAsItWasWhateverEndsIt) {
    struct End {
        const char *name;
        Arguments arguments;
        std::function<void(const Terminal &)> happens;
        int exitStatus = 0;
        bool reads = true;
    };
    const auto type = [](const char *keys) { return [keys](const Terminal &terminal) { terminal.type(keys); }; };
    const auto kill = [](int number) { return [number](const Terminal &terminal) { terminal.signal(number); }; };
    for (const End &end : {End{"time over", {"--seconds", "1"}, {}}, End{"Ctrl-C", {}, type("\x03")},
                           End{"Ctrl-\\", {}, type("\x1c")}, End{"SIGTERM", {}, kill(SIGTERM)},
                           End{"SIGHUP", {}, kill(SIGHUP)}, End{"a log that is full", {"--log", "/dev/full"}, {}, 1},
                           End{"an output that is full", {"--also", "csv:/dev/full"}, {}, 1},
                           End{"Ctrl-S, and time over", {"--seconds", "1"}, type("\x13"), 1},
                           End{"nobody reads, and time over", {"--seconds", "4"}, {}, 1, false}}) {
        SCOPED_TRACE(end.name);
        Terminal terminal({300, 200}, ANALYSER_PROGRAM, monitor(end.arguments));
        const termios before = terminal.modes();
        ASSERT_TRUE(terminal.waitFor([&] { return last(terminal, entering) > 0; }));
        if (end.happens) {
            EXPECT_FALSE(echoes(terminal));
            end.happens(terminal);
        }
        const int status = terminal.waitForChange(end.reads);
        EXPECT_TRUE(WIFEXITED(status)) << status;
        EXPECT_EQ(WEXITSTATUS(status), end.exitStatus);
        expectLeft(terminal, before);
        EXPECT_GT(last(terminal, end.exitStatus == 0 ? "summary: " : "cannot write the "), last(terminal, leaving));
    }
}

TEST(LiveView, showsAToneAndTheNewsInAWindowOfAnySizeAndGivesTheTerminalBackWhileItIsStopped) {
    support::Program talker(SONVEX_TALKER, {"--device", "lo", "--source", "020000000001", "--signal", "sine:1000:0.5",
                                            "--channels-at", "16000:1"});
    Terminal terminal({100, 24}, ANALYSER_PROGRAM, monitor({"--spectrum", "0:12"}));
    const termios before = terminal.modes();
    EXPECT_TRUE(terminal.waitFor(shows(terminal, "results/s  peak at 996.1 Hz, -9.0 dBFS")));
    EXPECT_TRUE(terminal.waitFor(shows(terminal, ": 1 channels after 2, configured 2")));

    terminal.type("\x1a");
    EXPECT_TRUE(WIFSTOPPED(terminal.waitForChange()));
    expectLeft(terminal, before);
    terminal.resize({120, 50});
    terminal.signal(SIGCONT);
    for (const auto &[size, rows] : {std::pair(Terminal::Size{120, 50}, 50U), {{90, 9}, 9U}}) {
        terminal.resize(size);
        EXPECT_TRUE(terminal.waitFor([&, amount = rows] {
            const std::size_t drawn = picture(terminal).size();
            return drawn + 1 == amount || drawn == amount; // panels share the rows evenly
        }));
        EXPECT_TRUE(shows(terminal, "peak 0.5000")());
        const auto lines = picture(terminal);
        for (const char sign : {'+', '-'}) { // the scale is 1 until a picture was drawn before the tone came
            EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                                    [sign, width = size.columns - 1U](const std::string &line) {
                                        return (line.rfind(sign + std::string("1.0000 "), 0) == 0 ||
                                                line.rfind(sign + std::string("0.5000 "), 0) == 0) &&
                                               charactersOf(line) == width;
                                    }),
                      1);
        }
        EXPECT_FALSE(echoes(terminal));
    }
    terminal.type("\x03");
    EXPECT_EQ(terminal.waitForChange(), 0);
    expectLeft(terminal, before);
}

TEST(LiveView, showsALineForEachOfManyChannelsAsFarAsTheyHaveRoom) {
    support::Program talker(SONVEX_TALKER,
                            {"--device", "lo", "--source", "020000000001", "--streams", "4", "--channels", "16",
                             "--format", "int24", "--signal", "sine:1000:0.5", "--restart-at", "16000", "--restart-at",
                             "40000", "--restart-at", "100000"});
    Terminal terminal({90, 24}, ANALYSER_PROGRAM, {"monitor", "--device", "lo"});
    EXPECT_TRUE(terminal.waitFor([&] { return terminal.shown().find("listening on lo: ") != std::string::npos; }));
    const std::string level = " -9.0 ";
    EXPECT_TRUE(terminal.waitFor(shows(terminal, "0200000000010000   0  " + level + "█")));
    EXPECT_TRUE(terminal.waitFor(shows(terminal, "clock of 0200000000010000: ")));
    EXPECT_TRUE(shows(terminal, "more channels")());
    EXPECT_TRUE(shows(terminal, "waveform_0200000000010000_ch0  running")());
    EXPECT_LE(picture(terminal).size(), 24U);
    terminal.resize({320, 24});
    EXPECT_TRUE(terminal.waitFor(shows(terminal, "0200000000010003  15  " + level)));
    EXPECT_FALSE(shows(terminal, "more channels")());
    terminal.resize({90, 90});
    EXPECT_TRUE(terminal.waitFor(shows(terminal, "0200000000010003  15  A   -9.0  C   -9.0  Z   -9.0  max   -9.0 █")));
    for (const std::string &line : picture(terminal)) {
        EXPECT_LT(charactersOf(line), 90) << line;
    }
    terminal.type("\x03");
    EXPECT_EQ(terminal.waitForChange(), 0);
}

TEST(LiveView, leavesTheScreenBeforeAnOutputIsWaitedForAndASecondCtrlCEndsTheProgramAtOnce) {
    support::Program talker(SONVEX_TALKER, {"--device", "lo", "--source", "020000000001"});
    const QTemporaryDir folder;
    const std::string pipe = folder.filePath(QStringLiteral("pipe")).toStdString();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int end = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    std::atomic<bool> reads{true};
    const auto slowReader = std::async(std::launch::async, [&] {
        std::array<char, 4096> part{};
        while (reads) {
            (void)!read(end, part.data(), part.size());
            poll(nullptr, 0, 5);
        }
    });
    Terminal terminal({80, 24}, ANALYSER_PROGRAM, monitor({"--also", "csv:" + pipe}, "24000"));
    const termios before = terminal.modes();
    EXPECT_TRUE(terminal.waitFor(shows(terminal, "running")));
    terminal.type("\x03");
    EXPECT_TRUE(terminal.waitFor([&] { return last(terminal, leaving) > last(terminal, entering); }));
    terminal.type("\x03");
    const int status = terminal.waitForChange();
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGINT) << status;
    expectLeft(terminal, before);
    reads = false;
    slowReader.wait();
    close(end);
}

TEST(LiveView, leavesSignalsAloneThatItsParentIgnores) {
    auto arguments = monitor();
    arguments.insert(arguments.begin(), {"-c", "trap '' HUP TSTP; exec \"$0\" \"$@\"", ANALYSER_PROGRAM});
    Terminal terminal({80, 24}, "sh", arguments);
    EXPECT_TRUE(terminal.waitFor(shows(terminal, "  1 s  ")));
    terminal.type("\x1a");
    terminal.signal(SIGHUP);
    EXPECT_TRUE(terminal.waitFor(shows(terminal, "  3 s  ")));
    terminal.signal(SIGTERM);
    EXPECT_EQ(terminal.waitForChange(), 0);
}

} // namespace
