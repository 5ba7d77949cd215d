#pragma once

#include <unistd.h>

namespace talker {

/// Closes what it holds.
class FileDescriptor {
public:
    explicit FileDescriptor(int value) : value(value) {}
    ~FileDescriptor() { close(value); }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    int get() const { return value; }

private:
    int value;
};

} // namespace talker
