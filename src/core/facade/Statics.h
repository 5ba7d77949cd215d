#pragma once

class Sonvex;
struct Registries;
namespace pcapplus {
class PcapDeviceManager;
} // namespace pcapplus
namespace version {
class VersionInfo;
} // namespace version

/// The objects that live from library load to unload. Host's thread only.
namespace statics {

version::VersionInfo &versionInfo();
pcapplus::PcapDeviceManager &deviceManager();
Registries &registries();
Sonvex &sonvex();

} // namespace statics
