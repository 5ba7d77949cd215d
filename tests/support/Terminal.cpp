#include "support/Terminal.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utmp.h>

namespace support {

namespace {

[[noreturn]] void runInForeground(char *const *command) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    std::signal(SIGTTOU, SIG_IGN);
    tcsetpgrp(STDIN_FILENO, getpid());
    for (const int number : {SIGTTOU, SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGTSTP}) {
        std::signal(number, SIG_DFL);
    }
    execvp(command[0], command);
    _exit(127);
}

/// Tells the process of the program, and then each change of it.
[[noreturn]] void lead(int slave, int statuses, char *const *command) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // also if the test is killed
    login_tty(slave);
    const pid_t program = fork();
    if (program == 0) {
        runInForeground(command);
    }
    int news = program;
    do {
        (void)!write(statuses, &news, sizeof news);
    } while (waitpid(program, &news, WUNTRACED) == program);
    pause();
    _exit(0);
}

winsize windowSize(Terminal::Size size) {
    return {size.rows, size.columns, 0, 0};
}

} // namespace

Terminal::Terminal(Size size, const std::string &path, const std::vector<std::string> &arguments) {
    std::vector<char *> command{const_cast<char *>(path.c_str())};
    for (const std::string &argument : arguments) {
        command.push_back(const_cast<char *>(argument.c_str()));
    }
    command.push_back(nullptr);
    setenv("TERM", "xterm", 1);
    const winsize window = windowSize(size);
    int slave = -1;
    std::array<int, 2> pipe{};
    if (openpty(&screen, &slave, nullptr, nullptr, &window) != 0 || pipe2(pipe.data(), O_CLOEXEC) != 0 ||
        fcntl(screen, F_SETFD, FD_CLOEXEC) != 0 || (leader = fork()) < 0) {
        throw std::system_error(errno, std::generic_category(), "terminal");
    }
    if (leader == 0) {
        lead(slave, pipe[1], command.data());
    }
    close(slave);
    close(pipe[1]);
    statuses = pipe[0];
    program = waitForChange();
}

Terminal::~Terminal() {
    kill(program, SIGKILL);
    kill(leader, SIGKILL);
    waitpid(leader, nullptr, 0);
    close(screen);
    close(statuses);
}

void Terminal::type(const std::string &keys) const {
    (void)!write(screen, keys.data(), keys.size());
}

void Terminal::resize(Size size) const {
    const winsize window = windowSize(size);
    ioctl(screen, TIOCSWINSZ, &window);
}

void Terminal::signal(int number) const {
    kill(program, number);
}

termios Terminal::modes() const {
    termios modes{};
    tcgetattr(screen, &modes);
    return modes;
}

bool Terminal::waitFor(const std::function<bool()> &condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        read(20);
    }
    return true;
}

int Terminal::waitForChange(bool reads) {
    pollfd news{statuses, POLLIN, 0};
    for (int slice = 0; slice < 2000; ++slice) {
        if (poll(&news, 1, 20) == 1) {
            int status = -1;
            (void)!::read(statuses, &status, sizeof status);
            read(0); // what it has written before
            return status;
        }
        if (reads) {
            read(0);
        }
    }
    return -1;
}

void Terminal::read(int milliseconds) {
    std::array<char, 65536> buffer{};
    for (pollfd state{screen, POLLIN, 0}; poll(&state, 1, milliseconds) == 1 && (state.revents & POLLIN) != 0;) {
        const auto size = ::read(screen, buffer.data(), buffer.size());
        text.append(buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
        milliseconds = 0;
    }
}

} // namespace support
