#include <gtest/gtest.h>

#include "support/Program.h"

namespace {

using Arguments = std::vector<std::string>;

struct Refused {
    Arguments arguments;
    std::string reason;
};

/// @param first what every command line begins with
void expectRefusals(const Arguments &first, const std::vector<Refused> &table) {
    for (const Refused &refused : table) {
        Arguments arguments = first;
        arguments.insert(arguments.end(), refused.arguments.begin(), refused.arguments.end());
        SCOPED_TRACE(testing::PrintToString(refused.arguments));
        support::expectRefusal(support::Program(SONVEX_TALKER, arguments).wait(), 2, refused.reason);
    }
}

const Arguments stream = {"--device", "lo", "--source", "020000000001", "--frames", "1"};

TEST(CommandLine, refusesAnIncompleteOrContradictoryRequest) {
    expectRefusals({}, {{{"--seconds", "0.5", "--frames", "1", "--device", "lo"}, "exclude each other"},
                        {{}, "--device is missing"},
                        {{"--device"}, "Missing value"},
                        {{"--device", "no\nadapter"}, "unknown adapter 'no adapter', there are: lo"},
                        {{"--device", "lo"}, "no address of its own"}});
}

TEST(CommandLine, refusesMalformedValuesAndStrayWords) {
    expectRefusals(stream, {{{"--colour", "red"}, "Unknown option 'colour'"},
                            {{"stray"}, "'stray'"},
                            {{"--destination", ""}, "--destination"},
                            {{"--frames", "2"}, "--frames is given twice"},
                            {{"--channels", "1024"}, "'1024' is no number from 1 to 1023"},
                            {{"--channels", "2x"}, "'2x'"},
                            {{"--channels", ""}, "''"},
                            {{"--format", "int8"}, "'int8' is none of int16, int24, int32, float32"},
                            {{"--rate", "11025"}, "'11025' is none of 8000, 16000"},
                            {{"--vlan", "4095"}, "'4095' is no number from 0 to 4094"},
                            {{"--vlan", "2:8"}, "'8' is no number from 0 to 7"},
                            {{"--stream-id", "020000000001"}, "is no stream ID"},
                            {{"--streams", "65"}, "'65' is no number from 1 to 64"},
                            {{"--streams", "2", "--stream-id", "020000000001ffff"}, "can't count up to 2 streams"},
                            {{"--streams", "3", "--destination", "91e0f000fefe"}, "can't count up to 3 streams"},
                            {{"--channels", "1023", "--samples-per-packet", "33"}, "more than an AAF frame can hold"}});
    expectRefusals({"--device", "lo"}, {{{"--source", "02000000000"}, "'02000000000' is no MAC"},
                                        {{"--frames", "0"}, "--frames: '0'"},
                                        {{"--seconds", "0"}, "--seconds: '0'"}});
}

TEST(CommandLine, refusesSignalsThatItCannotPlay) {
    expectRefusals(stream, {{{"--signal", "triangle:1:1"}, "signal 'triangle:1:1'"},
                            {{"--signal", "sine:1000:0.5:1"}, "none of sine:HZ:AMPLITUDE"},
                            {{"--signal", "sine:24001:1"}, "'24001'"},
                            {{"--rate", "8000", "--signal", "sine:4001:1"}, "'4001'"},
                            {{"--signal", "square:1:nan"}, "'nan'"},
                            {{"--signal", "noise:-1"}, "'-1'"},
                            {{"--signal", "ramp", "--signal", "wav:missing.wav"}, "'missing.wav'"},
                            {{"--signal", "wav:" SONVEX_TALKER}, "audio file"}});
}

TEST(CommandLine, refusesFaultsThatNoFrameCanHave) {
    expectRefusals(stream,
                   {{{"--drop", "x"}, "--drop"},
                    {{"--drop", "1:2"}, "not of the form FRAME"},
                    {{"--drop", "1", "--drop", "1"}, "given twice for frame 1"},
                    {{"--channels-at", "1:1024"}, "'1024'"},
                    {{"--length-at", "0:65536"}, "'65536'"},
                    {{"--truncate", "0:13"}, "'13'"},
                    {{"--truncate", "0:62"}, "frame 0 has only 62 bytes"},
                    {{"--vlan", "2", "--truncate", "0:66"}, "frame 0 has only 66 bytes"},
                    {{"--format-at", "0:aes3"}, "'aes3' is none of"},
                    {{"--rate-at", "0:0"}, "'0' is none of"},
                    {{"--non-finite", "1:1"}, "not of the form FRAME"},
                    {{"--format", "float32", "--format-at", "3:int32", "--non-finite", "4"}, "frame 4 has int32"},
                    {{"--channels-at", "1:1", "--truncate", "2:50"}, "frame 2 has only 50 bytes"},
                    {{"--samples-per-packet", "100", "--channels-at", "9:328"}, "more than an AAF frame"}});
}

TEST(CommandLine, withoutTheRightToSendNamesTheRemedy) {
    support::expectRefusal(
        support::Program("setpriv", {"--bounding-set=-net_raw", SONVEX_TALKER, "--device", "lo"}).wait(), 2,
        "'sudo setpriv ");
}

} // namespace
