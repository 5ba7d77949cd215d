#pragma once

#include <functional>
#include <string>

#include <sonvex/export.h>

namespace sonvex {

class IChannelData;

/// The host's tap on one processor.
class SONVEX_EXPORT IMeteringDataSource {
public:
    IMeteringDataSource();
    IMeteringDataSource(const IMeteringDataSource &);
    virtual ~IMeteringDataSource();
    IMeteringDataSource &operator=(const IMeteringDataSource &);

    /**
     * Binds the function that gets each result, in order, on the thread that added the processor.
     * The first function stays for the life of the source, which is that of the library: a later one is dropped, with
     * true as the answer, also for a processor of a later run with the same unique ID.
     * @return false for an empty function, which is refused
     */
    virtual bool bindChannelCallback(std::function<void(IChannelData &)> callback) = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex
