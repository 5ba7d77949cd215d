#include "process/configuration/SoundLevelValueTypes.h"

namespace process {

using sonvex::iprocess::SoundLevelValueType;

const std::map<std::string, SoundLevelValueType> &soundLevelValueTypes() {
    static const std::map<std::string, SoundLevelValueType> types = [] {
        std::map<std::string, SoundLevelValueType> all;
        int index = 0;
        for (const auto &[name, displayName] : {std::pair{"dBA SPL fast", "dBA SPL f"},
                                                {"dBA SPL slow", "dBA SPL s"},
                                                {"dBC SPL fast", "dBC SPL f"},
                                                {"dBC SPL slow", "dBC SPL s"},
                                                {"dBZ SPL fast", "dBZ SPL f"},
                                                {"dBZ SPL slow", "dBZ SPL s"},
                                                {"dBFS", "dBFS"}}) {
            all.emplace(name, SoundLevelValueType(name, displayName, index++));
        }
        return all;
    }();
    return types;
}

} // namespace process
