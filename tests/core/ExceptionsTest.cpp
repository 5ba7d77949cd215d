#include <type_traits>

#include <gtest/gtest.h>

#include <sonvex/exceptions.h>

namespace {

using namespace std::string_literals;
using exceptions::InstanceAlreadyExists;
using exceptions::InstanceNotConvertable;
using exceptions::InstanceNotCreateable;
using exceptions::ProcessorAlreadyExists;
using exceptions::ResourceNotAvailable;
using exceptions::SonvexException;
using exceptions::StreamingDeviceAlreadyExists;

template <class Base, class... Exceptions>
constexpr bool areCopyableKindsOf = ((std::is_base_of_v<Base, Exceptions> && std::is_copy_constructible_v<Exceptions> &&
                                      std::is_copy_assignable_v<Exceptions>)&&...);
static_assert(areCopyableKindsOf<std::exception, SonvexException>);
static_assert(areCopyableKindsOf<SonvexException, ResourceNotAvailable, InstanceNotConvertable, InstanceNotCreateable,
                                 InstanceAlreadyExists>);
static_assert(areCopyableKindsOf<InstanceAlreadyExists, ProcessorAlreadyExists, StreamingDeviceAlreadyExists>);
static_assert(!std::is_base_of_v<InstanceAlreadyExists, InstanceNotCreateable>);

TEST(Exceptions, keepTheirTextsWhenTheyAreCopiedWhileThrown) {
    try {
        const ProcessorAlreadyExists original("message"s, "id"s);
        throw ProcessorAlreadyExists(original);
    } catch (const InstanceAlreadyExists &caught) {
        EXPECT_STREQ(caught.what(), "message");
        EXPECT_STREQ(dynamic_cast<const ProcessorAlreadyExists &>(caught).getProcessorUniqueId(), "id");
    }
    try {
        const StreamingDeviceAlreadyExists original("message"s, "eth0"s, "001122334455"s);
        throw StreamingDeviceAlreadyExists(original);
    } catch (const InstanceAlreadyExists &caught) {
        EXPECT_STREQ(caught.what(), "message");
        const auto &device = dynamic_cast<const StreamingDeviceAlreadyExists &>(caught);
        EXPECT_STREQ(device.getNetworkDeviceName(), "eth0");
        EXPECT_STREQ(device.getStreamDeviceMacAddress(), "001122334455");
    }
}

} // namespace
