// The exported createInstance functions: each converts its references, makes the object and keeps it in its registry.

#include <utility>

#include <sonvex/IAdapterFacts.h>
#include <sonvex/INetworkDeviceManager.h>
#include <sonvex/INetworkReceiverHandle.h>
#include <sonvex/IStreamFacts.h>

#include "core/facade/Registries.h"
#include "core/facade/Sonvex.h"
#include "core/facade/Statics.h"
#include "pcapplus/PcapDeviceManager.h"

namespace sonvex {

INetworkDeviceManager &INetworkDeviceManager::createInstance() {
    return statics::deviceManager();
}

IBufferConfiguration &IBufferConfiguration::createInstance(std::string name, unsigned int bufferSize) {
    return Registries::create(statics::registries().buffers, std::move(name), bufferSize);
}

IBufferConfiguration &IBufferConfiguration::createInstance(std::string name, unsigned int bufferSize,
                                                           unsigned int clockSignalingSampleAmount) {
    return Registries::create(statics::registries().buffers, std::move(name), bufferSize, clockSignalingSampleAmount);
}

IDeviceConfiguration &IDeviceConfiguration::createInstance(std::string name, IBufferConfiguration &bufferConfiguration,
                                                           unsigned int sampleSizeInBytes,
                                                           unsigned int amountOfChannels,
                                                           unsigned int amountOfSamplesPerChannel) {
    return Registries::create(statics::registries().devices, std::move(name),
                              &dynamic_cast<BufferConfiguration &>(bufferConfiguration), sampleSizeInBytes,
                              amountOfChannels, amountOfSamplesPerChannel);
}

IDeviceConfiguration &IDeviceConfiguration::createInstance(std::string name, IBufferConfiguration &bufferConfiguration,
                                                           SampleFormat sampleFormat, unsigned int amountOfChannels,
                                                           unsigned int amountOfSamplesPerChannel,
                                                           unsigned int sampleRate) {
    return Registries::create(statics::registries().devices, std::move(name),
                              &dynamic_cast<BufferConfiguration &>(bufferConfiguration), sampleFormat, amountOfChannels,
                              amountOfSamplesPerChannel, sampleRate);
}

IStreamConfiguration &IStreamConfiguration::createInstance(std::string name, const StreamId &streamId,
                                                           INetworkDeviceInfo &networkDeviceInfo,
                                                           IDeviceConfiguration &deviceConfiguration) {
    return Registries::create(statics::registries().streams, std::move(name), streamId,
                              &dynamic_cast<pcapplus::PcapDeviceInfo &>(networkDeviceInfo),
                              &dynamic_cast<DeviceConfiguration &>(deviceConfiguration));
}

IStreamConfiguration &IStreamConfiguration::createInstance(std::string name, std::string deviceMacAddress,
                                                           INetworkDeviceInfo &networkDeviceInfo,
                                                           IDeviceConfiguration &deviceConfiguration) {
    return Registries::create(statics::registries().streams, std::move(name), std::move(deviceMacAddress),
                              &dynamic_cast<pcapplus::PcapDeviceInfo &>(networkDeviceInfo),
                              &dynamic_cast<DeviceConfiguration &>(deviceConfiguration));
}

IProcessConfiguration &IProcessConfiguration::createInstance(std::string name,
                                                             iprocess::IProcessorConfigBase &processorConfig,
                                                             std::string deviceMacAddress,
                                                             unsigned char channelNumber) {
    return Registries::create(statics::registries().processes, std::move(name),
                              &dynamic_cast<process::ProcessorConfigBase &>(processorConfig),
                              std::move(deviceMacAddress), channelNumber);
}

const IStreamFacts &IStreamFacts::createInstance(const std::string &deviceMacAddress) {
    return statics::sonvex().getFacts().getStreamFacts(deviceMacAddress);
}

const IStreamFacts &IStreamFacts::createInstance(const StreamId &streamId) {
    return createInstance(streamId.toString());
}

const IAdapterFacts &IAdapterFacts::createInstance(const std::string &systemDeviceName) {
    return statics::sonvex().getFacts().getAdapterFacts(systemDeviceName);
}

const IAdapterFacts &IAdapterFacts::createInstance(const ihandles::INetworkReceiverHandle &handle) {
    return createInstance(handle.getUid());
}

namespace iprocess {

IWaveformConfig &IWaveformConfig::createInstance(std::string name, unsigned int sampleAmount) {
    return Registries::create(statics::registries().waveforms, std::move(name), sampleAmount);
}

IWaveformConfig &IWaveformConfig::createInstance(std::string name, unsigned int sampleAmount,
                                                 unsigned int refreshRate) {
    return Registries::create(statics::registries().waveforms, std::move(name), sampleAmount, refreshRate);
}

ISpectrumConfig &ISpectrumConfig::createInstance(std::string name, unsigned int sampleAmount) {
    return Registries::create(statics::registries().spectra, std::move(name), sampleAmount,
                              process::SpectrumConfig::typeName);
}

ISpectrumConfig &ISpectrumConfig::createInstance(std::string name, unsigned int sampleAmount,
                                                 unsigned int refreshRate) {
    return Registries::create(statics::registries().spectra, std::move(name), sampleAmount, refreshRate,
                              process::SpectrumConfig::typeName);
}

ISoundLevelValueConfig &ISoundLevelValueConfig::createInstance(std::string name, unsigned int sampleAmount) {
    return Registries::create(statics::registries().soundLevelValues, std::move(name), sampleAmount);
}

ISoundLevelValueConfig &ISoundLevelValueConfig::createInstance(std::string name, unsigned int sampleAmount,
                                                               unsigned int refreshRate) {
    return Registries::create(statics::registries().soundLevelValues, std::move(name), sampleAmount, refreshRate);
}

} // namespace iprocess

} // namespace sonvex
