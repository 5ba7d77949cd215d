#pragma once

#include <atomic>
#include <functional>

/**
 * Calls a function when the application object goes, while Qt can still deliver events: at its very end Qt may be
 * caught delivering on another thread. One at a time in a process; it lives as long as the library. The function is
 * called on the thread that destroys the application object.
 */
class ApplicationEnd {
public:
    explicit ApplicationEnd(std::function<void()> function);
    ~ApplicationEnd();
    ApplicationEnd(const ApplicationEnd &) = delete;
    ApplicationEnd &operator=(const ApplicationEnd &) = delete;

    /// For the application object that there is, or the next one: each end of one takes the request along. On the
    /// library's thread.
    void await();

private:
    static void arrive();

    static ApplicationEnd *current;

    std::function<void()> function;
    std::atomic<bool> awaited{false};
};
