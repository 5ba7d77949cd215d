// A host that knows the library only through a plug-in, which it loads, uses and takes away again.
// Usage: plugin_host PLUGIN LIBRARY ENDING UNLOADING THREAD ROUNDS
#include <cstdlib>
#include <functional>
#include <iostream>
#include <string>

#include <dlfcn.h>

#include <QCoreApplication>
#include <QMetaType>
#include <QThread>
#include <QTimer>

namespace {

void require(bool condition, const char *what) {
    if (!condition) {
        std::cerr << "not true: " << what << '\n';
        std::_Exit(1);
    }
}

struct Options {
    std::string plugin;
    std::string library;
    std::string ending;    ///< of the run: destroy, remove, none
    std::string unloading; ///< close, leave
    std::string thread;    ///< main, other
    int rounds;
};

bool isMapped(const std::string &file) {
    void *handle = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) {
        dlclose(handle);
    }
    return handle != nullptr;
}

/// Runs this thread's event loop until the condition holds.
void runUntil(const std::function<bool()> &condition) {
    QEventLoop loop;
    while (!condition()) {
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
}

/// What an unloaded library may have left in the loop would come now.
void runAWhile() {
    bool over = false;
    QTimer::singleShot(30, [&] { over = true; });
    runUntil([&] { return over; });
}

void playRound(const Options &options) {
    require(!isMapped(options.library), "nothing of the library is left before it is loaded");
    void *plugin = dlopen(options.plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (plugin == nullptr) {
        std::cerr << dlerror() << '\n';
    }
    require(plugin != nullptr, "the plug-in can be loaded");
    const auto call = [&](const char *name) { return reinterpret_cast<bool (*)()>(dlsym(plugin, name)); };
    call("pluginBegin")();
    runUntil(call("pluginHasResults"));
    if (options.ending == "remove") {
        call("pluginRemove")();
    }
    if (options.ending != "none") {
        call("pluginDestroy")();
    }
    if (options.unloading == "close") {
        dlclose(plugin);
        require(!isMapped(options.plugin) && !isMapped(options.library), "the code is gone");
        require(QMetaType::type("sonvex::ChannelData") == QMetaType::UnknownType, "Qt has forgotten its types");
    }
    runAWhile();
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 7) {
        return 2;
    }
    const Options options{argv[1], argv[2], argv[3], argv[4], argv[5], std::atoi(argv[6])};
    QCoreApplication application(argc, argv);
    const auto play = [&] {
        for (int round = 0; round < options.rounds; ++round) {
            playRound(options);
        }
    };
    if (options.thread == "main") {
        play();
    } else {
        QThread *thread = QThread::create(play);
        thread->start();
        thread->wait();
        delete thread;
    }
    return 0;
}
