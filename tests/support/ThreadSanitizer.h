#pragma once

#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>

extern "C" {
// What libtsan exports without a header.
void AnnotateIgnoreReadsBegin(const char *file, int line);
void AnnotateIgnoreReadsEnd(const char *file, int line);
void AnnotateIgnoreWritesBegin(const char *file, int line);
void AnnotateIgnoreWritesEnd(const char *file, int line);
void AnnotateIgnoreSyncBegin(const char *file, int line);
void AnnotateIgnoreSyncEnd(const char *file, int line);
}
#endif

namespace support {

#ifdef __SANITIZE_THREAD__

/// To be called by operator new and delete, with their return address: what Qt allocates, events above all, is handed
/// over by Qt if another thread deletes it or gets it delivered.
void releaseQtsBlock(void *block, const void *caller);
void acquireQtsBlock(void *block, const void *caller);

/// While it lives, the thread sanitizer sees nothing of what this thread does: for test code whose locks would order
/// threads that the library leaves unordered.
class Unseen {
public:
    Unseen() {
        AnnotateIgnoreSyncBegin(__FILE__, __LINE__);
        AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
        AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    }
    ~Unseen() {
        AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
        AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
        AnnotateIgnoreSyncEnd(__FILE__, __LINE__);
    }
    Unseen(const Unseen &) = delete;
    Unseen &operator=(const Unseen &) = delete;
};

#else

inline void releaseQtsBlock(void * /*block*/, const void * /*caller*/) {}
inline void acquireQtsBlock(void * /*block*/, const void * /*caller*/) {}
struct Unseen {
    Unseen() {} // NOLINT(modernize-use-equals-default): or the compiler finds the variable unused
};

#endif

} // namespace support
