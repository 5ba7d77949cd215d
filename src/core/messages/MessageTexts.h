#pragma once

namespace sonvex::messagetexts {

inline constexpr char baseMessageName[] = "BaseMessage";
inline constexpr char statusMessageName[] = "StatusMessage";
inline constexpr char channelAmountChangedName[] = "ChannelAmountChanged";

inline constexpr char information[] = "INFORMATION";
inline constexpr char warning[] = "WARNING";

} // namespace sonvex::messagetexts
