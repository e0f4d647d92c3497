// Releasing a use, which is not inlined: most uses are kept.
#include "tree/memory/name_use.h"

namespace norvask {

void CNameUse::Release(CTreeString name) noexcept { name.Tree().Names().Release(name); }

}  // namespace norvask
