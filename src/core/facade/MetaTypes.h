#pragma once

#include <vector>

/**
 * The types that cross threads in queued calls, known to Qt for as long as the library is loaded: Qt would keep their
 * functions after the code of these is gone. Names that somebody else has registered before stay theirs.
 */
class MetaTypes {
public:
    MetaTypes();
    ~MetaTypes();
    MetaTypes(const MetaTypes &) = delete;
    MetaTypes &operator=(const MetaTypes &) = delete;

private:
    template <class Type>
    void add(const char *name);

    std::vector<int> own; ///< Qt's numbers of the types that were registered here
};
