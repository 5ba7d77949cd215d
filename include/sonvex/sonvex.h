#pragma once

// Everything a host needs.

#include <sonvex/IAdapterFacts.h>
#include <sonvex/IBaseMessage.h>
#include <sonvex/IBufferConfiguration.h>
#include <sonvex/IChannelAmountChanged.h>
#include <sonvex/IChannelData.h>
#include <sonvex/IDemoConfig.h>
#include <sonvex/IDeviceConfiguration.h>
#include <sonvex/IMeteringDataSource.h>
#include <sonvex/INetworkDeviceInfo.h>
#include <sonvex/INetworkDeviceManager.h>
#include <sonvex/INetworkReceiverHandle.h>
#include <sonvex/IProcessConfiguration.h>
#include <sonvex/IProcessorConfigBase.h>
#include <sonvex/IProcessorHandle.h>
#include <sonvex/ISampleProcessorConfigBase.h>
#include <sonvex/ISonvex.h>
#include <sonvex/ISoundLevelValueConfig.h>
#include <sonvex/ISpectrumConfig.h>
#include <sonvex/IStatusMessage.h>
#include <sonvex/IStreamConfiguration.h>
#include <sonvex/IStreamFacts.h>
#include <sonvex/IVectorData.h>
#include <sonvex/IVersionInfo.h>
#include <sonvex/IWaveformConfig.h>
#include <sonvex/SampleFormat.h>
#include <sonvex/SoundLevelValueType.h>
#include <sonvex/StreamId.h>
#include <sonvex/exceptions.h>
#include <sonvex/version.h>
