// A host that loads the library at run time, uses it and unloads it, twice.
#include <dlfcn.h>

#include <QCoreApplication>

int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    for (int round = 0; round < 2; ++round) {
        void *library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            return 1;
        }
        const auto interfaceVersion =
            reinterpret_cast<unsigned (*)()>(dlsym(library, "_ZN2qo9sonvexLib19getInterfaceVersionEv"));
        const auto createInstance = reinterpret_cast<void *(*)()>(dlsym(library, "_ZN7ISonvex14createInstanceEv"));
        const auto destroy = reinterpret_cast<void (*)()>(dlsym(library, "_ZN7ISonvex7destroyEv"));
        if (interfaceVersion() != 101 || createInstance() != createInstance()) {
            return 1;
        }
        destroy();
        dlclose(library);
    }
    return 0;
}
