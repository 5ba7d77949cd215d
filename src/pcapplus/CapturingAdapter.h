#pragma once

namespace facts {
class AdapterFacts;
} // namespace facts

namespace pcapplus {

/// Says whose frames the capture on this thread hands over, for as long as one lives: the frames themselves all go to
/// one receiver, without a word of where they come from.
class CapturingAdapter {
public:
    explicit CapturingAdapter(facts::AdapterFacts &facts);
    ~CapturingAdapter();
    CapturingAdapter(const CapturingAdapter &) = delete;
    CapturingAdapter &operator=(const CapturingAdapter &) = delete;

    /// For a frame that nobody wants; does nothing outside of a capture.
    static void countFrameOfNoStream();
    /// The tag of the frame that is handed over, as UntaggedFrame has it.
    static void setTag(int tag);
    static int getTag();
};

} // namespace pcapplus
