// How Qt hands objects from thread to thread, told to the thread sanitizer, which sees none of Qt's locks. Linked into
// the programs that run under it. Each hand-over is an edge from one address to the same: what a sender does after its
// signal stays unordered with the slot, and a race there is reported.
#include "support/ThreadSanitizer.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

#include <dlfcn.h>
#include <link.h>

#include <QByteArray>
#include <QCoreApplication>
#include <QMetaType>
#include <QSemaphore>
#include <QThread>
#include <private/qobject_p.h>

namespace {

struct Range {
    std::uintptr_t begin = 0;
    std::uintptr_t end = 0;
};

Range findQt() {
    Range found;
    const auto visit = [](dl_phdr_info *module, std::size_t /*size*/, void *result) {
        const auto wanted = reinterpret_cast<std::uintptr_t>(&qVersion);
        for (int i = 0; i < module->dlpi_phnum; ++i) {
            const ElfW(Phdr) &segment = module->dlpi_phdr[i];
            const std::uintptr_t begin = module->dlpi_addr + segment.p_vaddr;
            if (segment.p_type == PT_LOAD && begin <= wanted && wanted < begin + segment.p_memsz) {
                *static_cast<Range *>(result) = {begin, begin + segment.p_memsz};
                return 1;
            }
        }
        return 0;
    };
    dl_iterate_phdr(visit, &found);
    return found;
}

/// The code of Qt Core. Empty until the objects of this file are built, while there is one thread.
const Range qt = findQt();

bool isQt(const void *code) {
    const auto address = reinterpret_cast<std::uintptr_t>(code);
    return qt.begin <= address && address < qt.end;
}

/// Qt copies a signal's values into the event after it has allocated both, on the sender's thread, and destroys the
/// copies on the receiver's. It calls the two functions that were registered for the type and tells them nothing but
/// the address: so each type gets a pair of its own.
struct ValueFunctions {
    QMetaType::Destructor destroy;
    QMetaType::Constructor construct;
};

struct Type {
    const char *name; ///< never freed, as values go until the end of the process
    ValueFunctions functions;
};

std::array<Type, 64> types;
std::size_t knownTypes = 0;
std::mutex typesMutex;

// Unseen, as a lock of Qt orders the registration of a type and its use.
template <std::size_t Index>
[[gnu::no_sanitize("thread")]] void destroyValue(void *value) {
    __tsan_acquire(value);
    types[Index].functions.destroy(value);
}

template <std::size_t Index>
[[gnu::no_sanitize("thread")]] void *constructValue(void *memory, const void *original) {
    void *value = types[Index].functions.construct(memory, original);
    __tsan_release(value);
    return value;
}

template <std::size_t... Indices>
constexpr std::array<ValueFunctions, sizeof...(Indices)>
makeValueFunctions(std::index_sequence<Indices...> /*indices*/) {
    return {{{destroyValue<Indices>, constructValue<Indices>}...}};
}

constexpr auto valueFunctions = makeValueFunctions(std::make_index_sequence<types.size()>());

/// The functions that stand before those of a type. A type may be registered again, by a library that is loaded again.
const ValueFunctions &valueFunctionsBefore(const QByteArray &name, const ValueFunctions &functions) {
    const support::Unseen unseen;
    const std::lock_guard<std::mutex> lock(typesMutex);
    std::size_t index = 0;
    while (index < knownTypes && name != types[index].name) {
        ++index;
    }
    if (index == knownTypes) {
        types.at(knownTypes++).name = qstrdup(name.constData());
    }
    types[index].functions = functions;
    return valueFunctions[index];
}

bool isCurrentThread(QObject *object) {
    const auto *thread = qobject_cast<QThread *>(object);
    return thread != nullptr && thread == QThread::currentThread();
}

// A thread emits finished() after the loop that QThread::quit ends, and before the end for which QThread::wait waits.
void beginSignal(QObject *sender, int /*signal*/, void ** /*values*/) {
    if (isCurrentThread(sender)) {
        __tsan_acquire(sender);
    }
}

void endSignal(QObject *sender, int /*signal*/) {
    if (isCurrentThread(sender)) {
        __tsan_release(sender);
    }
}

QSignalSpyCallbackSet signalWatch{beginSignal, nullptr, endSignal, nullptr};
[[maybe_unused]] const bool watchingSignals = (qt_register_signal_spy_callbacks(&signalWatch), true);

/// A call for whose end the caller waits. The end is the deletion, on the receiver's thread: without an application
/// object Qt calls nothing.
class AwaitedCall : public QMetaCallEvent {
public:
    AwaitedCall(QtPrivate::QSlotObjectBase *function, void **values, QSemaphore &end)
        : QMetaCallEvent(function, nullptr, -1, values, &end), end(end) {}
    [[gnu::no_sanitize("thread")]] ~AwaitedCall() override { // writes before it can acquire
        __tsan_acquire(this);
        __tsan_release(&end);
    }

private:
    QSemaphore &end;
};

/// A queued call's function, which the last of sender and receiver destroys that has no more use for it.
class QueuedCall : public QtPrivate::QSlotObjectBase {
public:
    explicit QueuedCall(QSlotObjectBase *function) : QSlotObjectBase(run), function(function) {}

private:
    static void run(int operation, QSlotObjectBase *base, QObject *receiver, void **values, bool * /*equal*/) {
        auto *const call = static_cast<QueuedCall *>(base);
        if (operation == Call) {
            call->function->call(receiver, values);
            __tsan_release(call);
        } else if (operation == Destroy) {
            __tsan_acquire(call);
            call->function->destroyIfLastRef();
            delete call;
        }
    }

    QSlotObjectBase *function;
};

/// What Qt would call itself, with the order of its own atomic pointer.
std::atomic<QtMessageHandler> messageHandler{nullptr};

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text) {
    messageHandler.load(std::memory_order_acquire)(type, context, text);
}

/// Qt's own function, where one of this file stands before it.
template <class Function>
Function *qtFunction(const char *symbol) {
    void *address = dlsym(RTLD_NEXT, symbol);
    if (address == nullptr) {
        std::abort();
    }
    return reinterpret_cast<Function *>(address);
}

} // namespace

namespace support {

void releaseQtsBlock(void *block, const void *caller) {
    if (isQt(caller)) {
        __tsan_release(block);
    }
}

void acquireQtsBlock(void *block, const void *caller) {
    if (isQt(caller)) {
        __tsan_acquire(block);
    }
}

} // namespace support

// Weak: a test program may have its own.

[[gnu::weak, gnu::visibility("default")]] void *operator new(std::size_t size) {
    if (void *memory = std::malloc(size == 0 ? 1 : size)) {
        support::releaseQtsBlock(memory, __builtin_return_address(0));
        return memory;
    }
    throw std::bad_alloc();
}

[[gnu::weak, gnu::visibility("default")]] void operator delete(void *memory) noexcept {
    support::acquireQtsBlock(memory, __builtin_return_address(0));
    std::free(memory);
}
[[gnu::weak, gnu::visibility("default")]] void operator delete(void *memory, std::size_t /*size*/) noexcept {
    support::acquireQtsBlock(memory, __builtin_return_address(0));
    std::free(memory);
}

// What Qt itself passes to memcpy, malloc and the like is ordered by its own locks and not looked at; nor is what the
// dynamic loader allocates, a thread's variables for instance. No report is held back for a function of theirs in its
// stack: whatever they call back is looked at in full.
extern "C" Q_DECL_EXPORT const char *__tsan_default_suppressions() {
    return "called_from_lib:libQt5Core.so\n"
           "called_from_lib:/ld-linux\n";
}

// libtsan takes some addresses of a loaded library's thread variables for what another C library would have put there,
// and believes the size that stands before them. The blocks are known as such of malloc anyway.
extern "C" Q_DECL_EXPORT const char *__tsan_default_options() {
    return "intercept_tls_get_addr=0";
}

// The functions of Qt that all modules of a program find here first.

int QMetaType::registerNormalizedType(const ::QByteArray &name, Destructor destructor, Constructor constructor,
                                      int size, TypeFlags flags, const QMetaObject *metaObject) {
    static auto *const registerType = qtFunction<int(const ::QByteArray &, Destructor, Constructor, int, TypeFlags,
                                                     const QMetaObject *)>(
        "_ZN9QMetaType22registerNormalizedTypeERK10QByteArrayPFvPvEPFS3_S3_PKvEi6QFlagsINS_8TypeFlagEEPK11QMetaObject");
    const ValueFunctions &before = valueFunctionsBefore(name, {destructor, constructor});
    return registerType(name, before.destroy, before.construct, size, flags, metaObject);
}

bool QMetaObject::invokeMethodImpl(QObject *object, QtPrivate::QSlotObjectBase *slot, Qt::ConnectionType type,
                                   void *result) {
    static auto *const invoke = qtFunction<bool(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *)>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    if (type != Qt::BlockingQueuedConnection || object == nullptr || object->thread() == QThread::currentThread()) {
        return invoke(object, new QueuedCall(slot), type, result);
    }
    void *values[] = {result};
    QSemaphore end;
    auto *const call = new AwaitedCall(slot, values, end);
    __tsan_release(call);
    QCoreApplication::postEvent(object, call);
    end.acquire();
    __tsan_acquire(&end);
    slot->destroyIfLastRef();
    return true;
}

/// Every delivery to a class of ours comes here, on the receiver's thread, as the table of its virtual functions does
/// not lie in Qt. (QCoreApplication::notify is none of ours, and a callback before it would give the application object
/// time to go meanwhile.)
bool QObject::event(QEvent *event) {
    static auto *const handle = qtFunction<bool(QObject *, QEvent *)>("_ZN7QObject5eventEP6QEvent");
    __tsan_acquire(event);
    if (auto *call = dynamic_cast<QMetaCallEvent *>(event)) {
        const void *const end = call->types(); // lies behind the last value
        for (void **value = call->args(); value != end; ++value) {
            if (*value != nullptr) {
                __tsan_acquire(*value);
            }
        }
    }
    return handle(this, event);
}

QtMessageHandler qInstallMessageHandler(QtMessageHandler handler) {
    static auto *const install = qtFunction<QtMessageHandler(QtMessageHandler)>(
        "_Z22qInstallMessageHandlerPFv9QtMsgTypeRK18QMessageLogContextRK7QStringE");
    static const QtMessageHandler ofQt = install(nullptr);
    const QtMessageHandler earlier = messageHandler.exchange(handler != nullptr ? handler : ofQt);
    install(handleMessage);
    return earlier != nullptr ? earlier : ofQt;
}

void QThread::quit() {
    static auto *const quitThread = qtFunction<void(QThread *)>("_ZN7QThread4quitEv");
    __tsan_release(this);
    quitThread(this);
}

bool QThread::wait(QDeadlineTimer deadline) {
    static auto *const waitForThread = qtFunction<bool(QThread *, QDeadlineTimer)>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool ended = waitForThread(this, deadline);
    if (ended) {
        __tsan_acquire(this);
    }
    return ended;
}
