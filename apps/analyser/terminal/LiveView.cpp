#include "analyser/terminal/LiveView.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

#include <sonvex/version.h>

#include "analyser/output/Output.h"
#include "common/Text.h"
#include "common/writeIfReady.h"
#include "monitoring/describe.h"

namespace analyser {

namespace {

constexpr char entering[] = "\x1b[?1049h\x1b[?25l\x1b[2J";
constexpr char leaving[] = "\x1b[?25h\x1b[?1049l";
constexpr char home[] = "\x1b[H";
constexpr char clearToLineEnd[] = "\x1b[K";
constexpr char clearToScreenEnd[] = "\x1b[J";

constexpr std::chrono::milliseconds redrawPeriod(70);
constexpr std::size_t shownMessages = 3;

} // namespace

LiveView::LiveView(std::shared_ptr<Output> newOutput, const monitoring::SessionSettings &newSettings)
    : output(std::move(newOutput)), settings(newSettings) {
    for (const auto &analysis : settings.analyses) {
        panels.try_emplace(analysis.get(), *analysis, settings);
    }
}

LiveView::~LiveView() {
    leaveScreen();
}

bool LiveView::isPossible(const Output &output) {
    const char *terminal = std::getenv("TERM");
    return ::isatty(output.descriptor()) == 1 && terminal && std::string_view(terminal) != "dumb";
}

void LiveView::enterScreen() {
    const int terminal = output->descriptor();
    termios modes{};
    if (!terminalBefore && ::tcgetattr(terminal, &modes) == 0) {
        terminalBefore = modes;
    }
    if (terminalBefore) {
        modes = *terminalBefore;
        modes.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        (void)::tcsetattr(terminal, TCSANOW, &modes);
    }
    output->write(entering);
    drawSoon();
}

void LiveView::leaveScreen() {
    redraw.reset();
    if (terminalBefore) {
        // After a Ctrl-S nothing would reach the terminal; what is stopped in this way starts again.
        (void)::tcflow(output->descriptor(), TCOOFF);
        (void)::tcflow(output->descriptor(), TCOON);
        (void)::tcsetattr(output->descriptor(), TCSANOW, &*terminalBefore);
        if (common::writeIfReady(output->descriptor(), leaving) < 0) { // full of pictures that nobody has read
            (void)::tcflush(output->descriptor(), TCOFLUSH);
            (void)common::writeIfReady(output->descriptor(), leaving);
        }
        terminalBefore.reset();
    }
}

void LiveView::result(const monitoring::Result &result) {
    panels.at(result.analysis.get()).take(result);
    drawSoon();
}

void LiveView::message(const monitoring::Message &message) {
    if (message.change && message.change->before < 0 &&
        message.change->after == static_cast<int>(message.change->configured)) {
        return; // a stream begins as it should
    }
    messages.push_back(monitoring::describe(message));
    if (messages.size() > shownMessages) {
        messages.pop_front();
    }
    drawSoon();
}

void LiveView::status(const monitoring::Status &status) {
    latest = status;
    drawSoon();
}

void LiveView::end(const monitoring::Status &status) {
    leaveScreen();
    output->write(monitoring::summaryText(status, ""));
}

void LiveView::drawSoon() {
    if (terminalBefore && !redraw) {
        redraw = Clock::now() + redrawPeriod;
    }
}

void LiveView::wake() {
    redraw.reset();
    draw();
}

LiveView::Size LiveView::windowSize() const {
    winsize size{};
    const bool known = ::ioctl(output->descriptor(), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0;
    return known ? Size{size.ws_col, size.ws_row} : Size{80, 24};
}

void LiveView::draw() {
    const Size size = windowSize();
    // One column stays free: behind a full line the cursor would stand on its last character and clear that.
    const std::size_t columns = size.columns - 1;
    std::vector<std::string> lines;
    const auto append = [columns](std::vector<std::string> &to, const std::string &text) {
        const auto parts = text::wrapped(text, columns);
        to.insert(to.end(), parts.begin(), parts.end());
    };
    append(lines, "sonvex-analyser " + qo::sonvexLib::getVersion() + "  " + settings.device + "  " +
                      text::fixed(latest.seconds, 0) + " s  clock " + settings.clock.toString() + "  buffer " +
                      std::to_string(settings.bufferSize) +
                      (settings.window > 0.0 ? "  window " + text::number(settings.window) + " s" : ""));
    const monitoring::StreamStatus refused = monitoring::refusals(latest);
    append(lines, "missed " + std::to_string(monitoring::packetsMissed(latest)) + "  refused " +
                      std::to_string(refused.framesRefused()) + "  dropped " +
                      std::to_string(latest.adapter.kernelDrops) + "  messages " + std::to_string(latest.messages));
    const std::string health = monitoring::describeHealth(latest, settings);
    append(lines, health.empty() ? "" : "! " + health);
    if (const std::string clocks = monitoring::describeClocks(latest); !clocks.empty()) {
        append(lines, "! " + clocks);
    }
    std::vector<std::string> news;
    for (const auto &message : messages) {
        append(news, message);
    }

    const std::size_t fixedRows = lines.size() + news.size();
    const auto drawn = drawPanels(columns, size.rows > fixedRows ? size.rows - fixedRows : 0);
    lines.insert(lines.end(), drawn.begin(), drawn.end());
    lines.insert(lines.end(), news.begin(), news.end());

    std::string screen = home;
    for (std::size_t i = 0; i < std::min(lines.size(), size.rows); ++i) {
        screen += i > 0 ? "\r\n" : "";
        screen += text::cut(lines[i], columns);
        screen += clearToLineEnd;
    }
    output->write(screen + clearToScreenEnd);
}

std::vector<std::string> LiveView::drawPanels(std::size_t columns, std::size_t rows) {
    // A head and two rows are the least that says something; what has no room isn't drawn.
    constexpr std::size_t leastRows = 3;
    constexpr std::size_t ampleRows = 9;
    constexpr std::size_t fullMeters = 4; // more of them are a line each
    std::vector<const monitoring::AnalysisStatus *> shared;
    std::vector<const monitoring::AnalysisStatus *> meters;
    for (const auto &entry : latest.analyses) {
        (panels.at(entry.analysis.get()).panel().hasLine() ? meters : shared).push_back(&entry);
    }
    if (meters.size() <= fullMeters) {
        shared.insert(shared.end(), meters.begin(), meters.end());
        meters.clear();
    }
    const std::size_t ample = std::min(rows / 2, ampleRows * shared.size());
    const std::size_t meterRows = std::min(meters.size(), rows - ample);
    const std::size_t room = rows - meterRows;
    std::vector<std::string> lines;
    if (!shared.empty()) {
        const std::size_t shown = std::clamp<std::size_t>(room / leastRows, 1, shared.size());
        for (std::size_t i = 0; i < shown; ++i) {
            const auto part = panelLines(*shared[i], columns, room / shown);
            lines.insert(lines.end(), part.begin(), part.end());
        }
    }
    const auto part = meterLines(meters, columns, meterRows);
    lines.insert(lines.end(), part.begin(), part.end());
    return lines;
}

/// Side by side where one below the other they have no room.
std::vector<std::string> LiveView::meterLines(const std::vector<const monitoring::AnalysisStatus *> &meters,
                                              std::size_t columns, std::size_t rows) {
    constexpr std::size_t leastColumns = 38;
    if (meters.empty() || rows == 0) {
        return {};
    }
    const std::size_t most = std::max<std::size_t>((columns + 1) / (leastColumns + 1), 1);
    const std::size_t across = std::min((meters.size() + rows - 1) / rows, most);
    const bool isEnough = across * rows >= meters.size();
    const std::size_t down = isEnough ? rows : rows - 1;
    const std::size_t width = (columns + 1) / across - 1;
    std::vector<std::string> lines(down);
    for (std::size_t i = 0; i < std::min(across * down, meters.size()); ++i) {
        const monitoring::AnalysisStatus &entry = *meters[i];
        const auto &channel = entry.analysis->channel();
        const std::string number = std::to_string(channel.number);
        const std::string title =
            channel.stream + std::string(4 - std::min<std::size_t>(number.size(), 3), ' ') + number;
        const bool isSilent = entry.state == monitoring::AnalysisStatus::State::silent;
        std::string line = isSilent ? title + "  " + monitoring::describe(entry.state)
                                    : panels.at(entry.analysis.get()).panel().drawLine(title, width);
        line.resize(std::max(line.size(), isSilent ? width : 0), ' ');
        lines[i % down] += (i < down ? "" : " ") + line;
    }
    if (!isEnough) {
        lines.push_back("and " + text::counted(meters.size() - across * down, "more channel"));
    }
    return lines;
}

std::vector<std::string> LiveView::panelLines(const monitoring::AnalysisStatus &entry, std::size_t columns,
                                              std::size_t rows) {
    Panel &panel = panels.at(entry.analysis.get()).panel();
    std::vector<std::string> lines{entry.analysis->name() + "  " + monitoring::describe(entry.state) + "  " +
                                   text::fixed(entry.resultsPerSecond, 1) + " results/s  " + panel.takeHeadline()};
    const auto drawn = panel.draw(columns, rows > lines.size() ? rows - lines.size() : 0);
    lines.insert(lines.end(), drawn.begin(), drawn.end());
    return lines;
}

} // namespace analyser
