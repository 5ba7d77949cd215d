#include <sonvex/SoundLevelValueType.h>

#include <utility>

namespace sonvex::iprocess {

SoundLevelValueType::SoundLevelValueType(std::string name, std::string displayName, int index)
    : name(std::move(name)), displayName(std::move(displayName)), index(index) {}
SoundLevelValueType::SoundLevelValueType(const SoundLevelValueType &) = default;
SoundLevelValueType::SoundLevelValueType(SoundLevelValueType &&) noexcept = default;
SoundLevelValueType::~SoundLevelValueType() = default;
SoundLevelValueType &SoundLevelValueType::operator=(const SoundLevelValueType &) = default;
SoundLevelValueType &SoundLevelValueType::operator=(SoundLevelValueType &&) noexcept = default;

std::string SoundLevelValueType::getName() const {
    return name;
}

std::string SoundLevelValueType::getDisplayName() const {
    return displayName;
}

int SoundLevelValueType::getIndex() const {
    return index;
}

} // namespace sonvex::iprocess
