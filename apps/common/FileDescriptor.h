#pragma once

#include <utility>

#include <unistd.h>

namespace common {

/// Closes what it holds; a negative value is none.
class FileDescriptor {
public:
    explicit FileDescriptor(int newValue = -1) : value(newValue) {}
    FileDescriptor(FileDescriptor &&other) noexcept : value(std::exchange(other.value, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept {
        std::swap(value, other.value);
        return *this;
    }
    ~FileDescriptor() {
        if (value >= 0) {
            ::close(value);
        }
    }

    int get() const { return value; }

private:
    int value;
};

} // namespace common
