#include <type_traits>

#include <sonvex/exceptions.h>

// What a host may catch them as; the refusals themselves are tested where they are thrown.
namespace {

using exceptions::InstanceAlreadyExists;
using exceptions::InstanceNotCreateable;
using exceptions::SonvexException;

template <class Base, class... Exceptions>
constexpr bool areCopyableKindsOf = ((std::is_base_of_v<Base, Exceptions> && std::is_copy_constructible_v<Exceptions> &&
                                      std::is_copy_assignable_v<Exceptions>)&&...);
static_assert(areCopyableKindsOf<std::exception, SonvexException>);
static_assert(areCopyableKindsOf<SonvexException, exceptions::ResourceNotAvailable, exceptions::InstanceNotConvertable,
                                 InstanceNotCreateable, InstanceAlreadyExists>);
static_assert(areCopyableKindsOf<InstanceAlreadyExists, exceptions::ProcessorAlreadyExists,
                                 exceptions::StreamingDeviceAlreadyExists>);
static_assert(!std::is_base_of_v<InstanceAlreadyExists, InstanceNotCreateable>);

} // namespace
