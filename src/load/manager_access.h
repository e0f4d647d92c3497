// Internal. CManagerAccess: the state of a manager, for its operations.
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
    static bool CalculatesSourceOffsets(const CXMLManager& manager) noexcept {
        return manager.m_bCalculateSourceOffsets;
    }
};

}  // namespace norvask

#endif
