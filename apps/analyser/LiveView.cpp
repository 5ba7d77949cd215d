#include "analyser/LiveView.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

#include <sonvex/version.h>

#include "analyser/Output.h"
#include "analyser/Text.h"
#include "common/writeIfReady.h"

namespace analyser {

namespace {

constexpr char entering[] = "\x1b[?1049h\x1b[?25l\x1b[2J";
constexpr char leaving[] = "\x1b[?25h\x1b[?1049l";
constexpr char home[] = "\x1b[H";
constexpr char clearToLineEnd[] = "\x1b[K";
constexpr char clearToScreenEnd[] = "\x1b[J";

constexpr int redrawPeriod = 70; // ms
constexpr std::size_t shownMessages = 3;

} // namespace

LiveView::LiveView(Output &newOutput, const MonitorOptions &newOptions) : ResultSink(newOutput), options(newOptions) {
    redraw.setSingleShot(true);
    redraw.setInterval(redrawPeriod);
    QObject::connect(&redraw, &QTimer::timeout, &redraw, [this] { draw(); });
}

LiveView::~LiveView() {
    LiveView::leaveScreen();
}

bool LiveView::isPossible(const Output &output) {
    const char *terminal = std::getenv("TERM");
    return ::isatty(output.descriptor()) == 1 && terminal && std::string_view(terminal) != "dumb";
}

void LiveView::enterScreen() {
    const int terminal = output.descriptor();
    termios settings{};
    if (!terminalBefore && ::tcgetattr(terminal, &settings) == 0) {
        terminalBefore = settings;
    }
    if (terminalBefore) {
        settings = *terminalBefore;
        settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        (void)::tcsetattr(terminal, TCSANOW, &settings);
    }
    output.write(entering);
    drawSoon();
}

void LiveView::leaveScreen() {
    redraw.stop();
    if (terminalBefore) {
        // After a Ctrl-S nothing would reach the terminal; what is stopped in this way starts again.
        (void)::tcflow(output.descriptor(), TCOOFF);
        (void)::tcflow(output.descriptor(), TCOON);
        (void)::tcsetattr(output.descriptor(), TCSANOW, &*terminalBefore);
        (void)common::writeIfReady(output.descriptor(), leaving);
        terminalBefore.reset();
    }
}

void LiveView::begin(const std::vector<Analysis> &analyses) {
    panels = makePanels(analyses, options);
}

void LiveView::result(const Result &result) {
    panels.at(result.analysis.name)->take(result.data);
    drawSoon();
}

void LiveView::message(const sonvex::imessages::IBaseMessage &message) {
    messages.push_back(text::describe(message));
    if (messages.size() > shownMessages) {
        messages.pop_front();
    }
    drawSoon();
}

void LiveView::progress(const Progress &progress) {
    latest = progress;
    drawSoon();
}

void LiveView::summary(const Progress &progress) {
    leaveScreen();
    output.write(summaryText(progress, ""));
}

void LiveView::drawSoon() {
    if (terminalBefore && !redraw.isActive()) {
        redraw.start();
    }
}

LiveView::Size LiveView::windowSize() const {
    winsize size{};
    const bool known = ::ioctl(output.descriptor(), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0;
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
    append(lines, "sonvex-analyser " + qo::sonvexLib::getVersion() + "  " + options.device + "  " +
                      text::fixed(latest.seconds, 0) + " s  clock " + options.clock.toString() + "  buffer " +
                      std::to_string(options.bufferSize));
    append(lines, "missed " + std::to_string(latest.packetsMissed) + "  refused " +
                      std::to_string(latest.refused.channelAmount + latest.refused.dataLength) + "  messages " +
                      std::to_string(latest.messages));
    append(lines, latest.conditions.empty() ? "" : "! " + latest.conditions);
    std::vector<std::string> news;
    for (const auto &message : messages) {
        append(news, message);
    }

    // A head and two rows are the least that says something; what has no room isn't drawn.
    constexpr std::size_t leastRows = 3;
    const std::size_t fixedRows = lines.size() + news.size();
    const std::size_t room = size.rows > fixedRows ? size.rows - fixedRows : 0;
    const std::size_t shown =
        std::clamp<std::size_t>(room / leastRows, 1, std::max<std::size_t>(latest.analyses.size(), 1));
    for (std::size_t i = 0; i < std::min(shown, latest.analyses.size()); ++i) {
        const auto part = panelLines(latest.analyses[i], {size.columns, room / shown});
        lines.insert(lines.end(), part.begin(), part.end());
    }
    lines.insert(lines.end(), news.begin(), news.end());

    std::string screen = home;
    for (std::size_t i = 0; i < std::min(lines.size(), size.rows); ++i) {
        screen += i > 0 ? "\r\n" : "";
        screen += text::cut(lines[i], columns);
        screen += clearToLineEnd;
    }
    output.write(screen + clearToScreenEnd);
}

std::vector<std::string> LiveView::panelLines(const AnalysisProgress &entry, Size size) {
    Panel &panel = *panels.at(entry.name);
    const std::size_t columns = size.columns - 1;
    std::vector<std::string> lines{entry.name + "  " + entry.state + "  " + text::fixed(entry.resultsPerSecond, 1) +
                                   " results/s  " + panel.takeHeadline()};
    const auto drawn = panel.draw(columns, size.rows > lines.size() ? size.rows - lines.size() : 0);
    lines.insert(lines.end(), drawn.begin(), drawn.end());
    return lines;
}

} // namespace analyser
