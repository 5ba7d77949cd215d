#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex {

namespace iprocess {
class IProcessorConfigBase;
} // namespace iprocess

/// Which processor runs on which channel of which device.
class SONVEX_EXPORT IProcessConfiguration {
public:
    /**
     * @param name becomes the name of every result
     * @param deviceMacAddress the stream's address, letter for letter as in its IStreamConfiguration
     * @param channelNumber from 0
     * @throws std::bad_cast for a processor configuration that is not the library's own
     */
    static IProcessConfiguration &createInstance(std::string name, iprocess::IProcessorConfigBase &processorConfig,
                                                 std::string deviceMacAddress, unsigned char channelNumber);

    IProcessConfiguration();
    IProcessConfiguration(const IProcessConfiguration &);
    virtual ~IProcessConfiguration();
    IProcessConfiguration &operator=(const IProcessConfiguration &);

    virtual std::string getName() const = 0;
    virtual iprocess::IProcessorConfigBase &getProcessorConfig() const = 0;
    virtual std::string getDeviceMacAddress() const = 0;
    virtual unsigned char getChannelNumber() const = 0;
    virtual std::string toString() const = 0;
};

} // namespace sonvex
