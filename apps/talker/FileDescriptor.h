#pragma once

#include <unistd.h>

namespace talker {

/// Closes what it holds.
class FileDescriptor {
public:
    explicit FileDescriptor(int value) : value_(value) {}
    ~FileDescriptor() { close(value_); }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    int get() const { return value_; }

private:
    int value_;
};

} // namespace talker
