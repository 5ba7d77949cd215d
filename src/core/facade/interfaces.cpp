// The special members of the exported interfaces, defined here so that they and the virtual tables leave the library.

#include <sonvex/sonvex.h>

#define SONVEX_DEFINE_INTERFACE(Interface)                                                                             \
    Interface::Interface() = default;                                                                                  \
    Interface::Interface(const Interface &) = default;                                                                 \
    Interface::~Interface() = default;                                                                                 \
    Interface &Interface::operator=(const Interface &) = default;

SONVEX_DEFINE_INTERFACE(ISonvex)

namespace sonvex {

SONVEX_DEFINE_INTERFACE(IAdapterFacts)
SONVEX_DEFINE_INTERFACE(IBufferConfiguration)
SONVEX_DEFINE_INTERFACE(IChannelData)
SONVEX_DEFINE_INTERFACE(IDeviceConfiguration)
SONVEX_DEFINE_INTERFACE(IMeteringDataSource)
SONVEX_DEFINE_INTERFACE(INetworkDeviceInfo)
SONVEX_DEFINE_INTERFACE(INetworkDeviceManager)
SONVEX_DEFINE_INTERFACE(IProcessConfiguration)
SONVEX_DEFINE_INTERFACE(IStreamConfiguration)
SONVEX_DEFINE_INTERFACE(IStreamFacts)
SONVEX_DEFINE_INTERFACE(IVectorData)
SONVEX_DEFINE_INTERFACE(IVersionInfo)

namespace ihandles {

SONVEX_DEFINE_INTERFACE(INetworkReceiverHandle)
SONVEX_DEFINE_INTERFACE(IProcessorHandle)

} // namespace ihandles

namespace imessages {

SONVEX_DEFINE_INTERFACE(IBaseMessage)
SONVEX_DEFINE_INTERFACE(IChannelAmountChanged)
SONVEX_DEFINE_INTERFACE(IStatusMessage)
IStatusMessage::IStatusMessage(IStatusMessage &&) noexcept = default;
IStatusMessage &IStatusMessage::operator=(IStatusMessage &&) noexcept = default;

} // namespace imessages

namespace iprocess {

SONVEX_DEFINE_INTERFACE(IDemoConfig)
SONVEX_DEFINE_INTERFACE(IProcessorConfigBase)
SONVEX_DEFINE_INTERFACE(ISampleProcessorConfigBase)
SONVEX_DEFINE_INTERFACE(ISoundLevelValueConfig)
SONVEX_DEFINE_INTERFACE(ISpectrumConfig)
SONVEX_DEFINE_INTERFACE(IWaveformConfig)

} // namespace iprocess

} // namespace sonvex
