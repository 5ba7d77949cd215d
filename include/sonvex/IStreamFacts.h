#pragma once

#include <cstdint>
#include <string>

#include <sonvex/StreamId.h>
#include <sonvex/export.h>

namespace sonvex {

/// Why a frame of a stream was not taken although it was next in order.
enum class FrameRefusal {
    IncompleteHeader,  ///< shorter than an AVTP audio header
    ChannelAmount,     ///< declares no channel, or more than the device is configured with
    DataLength,        ///< declares another length than the configured samples of its channels have
    IncompleteSamples, ///< ends before the samples that it declares
    Format,            ///< declares another sample format than the configured one
    SampleRate,        ///< declares another sample rate than the configured one
};

/// The state of a stream's clock, as of the newest frames: up to 20 ms may lack.
struct StreamClock {
    /// Frames whose time stamp is marked as valid, among them those whose clock says that it is uncertain. Devices in
    /// sparse mode mark one frame in eight.
    std::uint64_t timestampsValid = 0;
    std::uint64_t timestampsUncertain = 0;
    /// Announced restarts of the media clock.
    std::uint64_t restarts = 0;

    /// How far the sample rate is above the nominal one, in millionths, as the presentation times of the last ten
    /// seconds imply it; NaN while they do not.
    double presentationOffset = 0;
    /// The same by the times of arrival.
    double arrivalOffset = 0;
    /// From one arrival to the next, in microseconds, in the last ten seconds; NaN while there are none.
    double leastDistance = 0;
    double meanDistance = 0;
    double greatestDistance = 0;
};

/**
 * What is known of the reception of one stream, in numbers that need no log. They count from the addition of the stream
 * in a run, and stay as they are when the run is over, until a run adds the address again.
 *
 * Any time on the host's thread. Each value is the newest one of itself: while the capture runs, two that are asked for
 * one after another may be a frame apart. Valid until the library unloads.
 *
 * What a host hears nothing of is the sum of frames lost, a frame for each gap, and the refused ones; a frame that
 * comes late is in it twice.
 */
class SONVEX_EXPORT IStreamFacts {
public:
    /**
     * The same object for an address on every call.
     * @param deviceMacAddress as in the stream's configuration, letter for letter
     * @throws exceptions::ResourceNotAvailable if no such stream was ever to be added
     */
    static const IStreamFacts &createInstance(const std::string &deviceMacAddress);
    /// Of a stream that is configured by its ID.
    static const IStreamFacts &createInstance(const StreamId &streamId);

    IStreamFacts();
    IStreamFacts(const IStreamFacts &);
    virtual ~IStreamFacts();
    IStreamFacts &operator=(const IStreamFacts &);

    /// Frames whose samples went to the channels' buffers.
    virtual std::uint64_t getFramesTaken() const = 0;
    /// Breaks in the sequence. The frame that shows one is itself not taken.
    virtual std::uint64_t getGaps() const = 0;
    /// Frames that never came, by the numbers around the gaps. A number has 8 bits: of a gap of 256 frames or more it
    /// is the rest of a division by 256.
    virtual std::uint64_t getFramesLost() const = 0;
    /// Gaps at frames that came twice or up to 16 frames late, which count no frame as lost.
    virtual std::uint64_t getFramesRepeated() const = 0;
    virtual std::uint64_t getFramesRefused(FrameRefusal cause) const = 0;
    /// Of all causes.
    virtual std::uint64_t getFramesRefused() const = 0;

    /// What the newest frame declares: its sample format by IEEE 1722 (2, 3 and 4 stand for integers of 32, 24 and 16
    /// bits, 1 for floats of 32), its channels and its bytes of samples. -1 before the first frame, and where the frame
    /// ends before.
    virtual int getFormat() const = 0;
    virtual int getChannelAmount() const = 0;
    virtual int getDataLength() const = 0;

    /// When the newest frame was captured, in microseconds since 1970 by the system's clock; 0 before the first frame.
    virtual std::int64_t getCaptureTime() const = 0;
    /// When it was read, in nanoseconds of std::chrono::steady_clock, up to 10 ms early, or as much as 32
    /// frames behind a stall of this machine; 0 before the first frame.
    virtual std::int64_t getSteadyTime() const = 0;

    /// What the newest frame declares, further: its sample rate in Hz, 0 where that is left to the user; the bits of a
    /// sample that count. -1 as above.
    virtual int getSampleRate() const = 0;
    virtual int getBitDepth() const = 0;
    /// The newest frame's 802.1Q tag: -1 for a frame without, and before the first one.
    virtual int getVlanId() const = 0;
    virtual int getVlanPriority() const = 0;
    /// The newest valid one, as StreamId has it; empty before.
    virtual std::string getStreamId() const = 0;
    /// Samples that were no finite numbers, each of them taken as 0.
    virtual std::uint64_t getNonFiniteSamples() const = 0;
    /// Computed from the frames of the last ten seconds: about 50 us of the caller's time.
    virtual StreamClock getClock() const = 0;
};

} // namespace sonvex
