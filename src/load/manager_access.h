// Internal. The state and the settings of the manager, for loads.
#ifndef NORVASK_LOAD_MANAGER_ACCESS_H
#define NORVASK_LOAD_MANAGER_ACCESS_H

#include "foundation/errors.h"
#include "norvask/manager.h"

namespace norvask {

class CManagerAccess {
public:
    // Throws CXMLException (parser not initialised).
    static void RequireInitialised(const CXMLManager& manager) {
        if (!manager.m_bInitialized) {
            ThrowParserNotInitialised();
        }
    }

    // Whether the converter in force is the library's own, which need not be asked.
    static bool HasOwnConverter() noexcept {
        const CXMLManager& manager = CXMLManager::sm_TheInstance;
        return manager.m_pConverter == &manager.m_Converter;
    }
};

}  // namespace norvask

#endif
