#include "engine/Run.h"

#include "core/logging/Log.h"

namespace engine {

bool Run::refuses(const char *context, const std::string &name, const char *refused) const {
    if (!over) {
        return false;
    }
    logging::warning(context, name, (std::string("The run was ended by ISonvex::destroy, ") + refused).c_str());
    return true;
}

bool Run::refusesStart(const char *context, const std::string &name, const char *refused) const {
    if (refuses(context, name, refused)) {
        return true;
    }
    beforeStart();
    return false;
}

} // namespace engine
