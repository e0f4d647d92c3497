// Internal. The settings of the manager, for the load under way.
#ifndef NORVASK_LOAD_MANAGER_ACCESS_H
#define NORVASK_LOAD_MANAGER_ACCESS_H

#include "norvask/manager.h"

namespace norvask {

class CManagerAccess {
public:
    // Whether the converter in force is the library's own, which need not be asked.
    static bool HasOwnConverter() noexcept {
        const CXMLManager& manager = CXMLManager::sm_TheInstance;
        return manager.m_pConverter == &manager.m_Converter;
    }
};

}  // namespace norvask

#endif
