#pragma once

#include <sonvex/sonvex.h>

namespace support {

/// A host's own implementation of the interfaces that the library takes: it has to refuse every face of it.
struct ForeignObject : sonvex::IBufferConfiguration,
                       sonvex::IDeviceConfiguration,
                       sonvex::INetworkDeviceInfo,
                       sonvex::IStreamConfiguration,
                       sonvex::iprocess::IProcessorConfigBase,
                       sonvex::IProcessConfiguration,
                       sonvex::ihandles::IProcessorHandle {
    std::string toString() const override { return "foreign"; }
    std::string getName() const override { return "foreign"; }
    std::string getDeviceMacAddress() const override { return "020000000001"; }
    unsigned int getBufferSize() const override { return 4800; }
    unsigned int getClockSignalingSampleAmount() const override { return 0; }
    void setClockSignalingSampleAmount(unsigned int /*amount*/) override {}
    bool isClockSignalingActive() const override { return false; }
    unsigned int getSampleSizeInBytes() const override { return 2; }
    unsigned int getAmountOfChannels() const override { return 2; }
    unsigned int getAmountOfSamplesPerChannel() const override { return 6; }
    int getSystemDeviceNumber() const override { return 1; }
    std::string getSystemDeviceName() const override { return "lo"; }
    std::string getSystemDeviceDescription() const override { return "foreign"; }
    bool isValid() const override { return true; }
    bool hasNoDescription() const override { return false; }
    IDeviceConfiguration &getDeviceConfiguration() const override { return const_cast<ForeignObject &>(*this); }
    std::string getProcessorType() const override { return "WaveformProcessor"; }
    IProcessorConfigBase &getProcessorConfig() const override { return const_cast<ForeignObject &>(*this); }
    unsigned char getChannelNumber() const override { return 0; }
    void start() override {}
    void stop() override {}
    bool isProcessingActive() const override { return false; }
    std::string getUniqueId() const override { return "foreign_id"; }
    bool isHandleBound() const override { return true; }
};

} // namespace support
