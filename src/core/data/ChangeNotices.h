#pragma once

/// What configurationChanged says: emitters and receivers compare these texts letter for letter.
namespace sonvex::notices {

inline constexpr char signalingSampleAmountChanged[] = "SignalingSampleAmountChnaged"; // sic
inline constexpr char sampleAmountChanged[] = "SampleAmountChanged";
inline constexpr char clockRefreshRateChanged[] = "ClockRefreshRateChanged";
inline constexpr char fftOrderChanged[] = "FFTOrderChanged";
inline constexpr char movingAverageActivityChanged[] = "MovingAverageActivityChanged";
inline constexpr char movingAverageWindowSizeChanged[] = "MovingAverageWindowSizeChanged";
inline constexpr char movingAverageWindowLengthChanged[] = "MovingAverageWindowLengthChanged";

/// The clock types are values of a configuration and notices at once.
inline constexpr char internalClock[] = "Internal clock";
inline constexpr char externalClock[] = "External clock";

} // namespace sonvex::notices
