#pragma once

#include <string>

#include <sonvex/export.h>

namespace sonvex::iprocess {

/// Names one of the values of a sound level result. Its index is the position of the value in the result's y.
class SONVEX_EXPORT SoundLevelValueType {
public:
    explicit SoundLevelValueType(std::string name = "N/A", std::string displayName = "N/A", int index = -1);
    SoundLevelValueType(const SoundLevelValueType &);
    SoundLevelValueType(SoundLevelValueType &&) noexcept;
    ~SoundLevelValueType();
    SoundLevelValueType &operator=(const SoundLevelValueType &);
    SoundLevelValueType &operator=(SoundLevelValueType &&) noexcept;

    std::string getName() const;
    std::string getDisplayName() const;
    int getIndex() const;

private:
    std::string name;
    std::string displayName;
    int index;
};

} // namespace sonvex::iprocess
