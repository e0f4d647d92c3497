// Internal. Who holds the strings of an attribute.
//
// An attribute that an element made shows a name of the tree's name table and a value of the tree's memory;
// both end with it. Every other attribute (made by an application, copied, or assigned to) holds the pages of
// its two strings, wherever they lie (ATTRIBUTE_HOLDS). Either both strings are held or neither is.
#ifndef NORVASK_TREE_ATTRIBUTE_ACCESS_H
#define NORVASK_TREE_ATTRIBUTE_ACCESS_H

#include <cstdint>
#include <new>

#include "norvask/attribut.h"
#include "tree/tree_string.h"

namespace norvask {

class CAttributeAccess {
public:
    // An attribute in the tree's memory. `name` is a name of that memory of which the use is taken over,
    // `value` a string of that memory. Throws std::bad_alloc.
    static CXMLAttribut* New(CTreeMemory& memory, const char* name, const char* value) {
        return new (memory.AllocatePlain(sizeof(CXMLAttribut)))
            CXMLAttribut(CXMLAttribut::SOwned(), name, value);
    }

    // Ends an attribute of an element; frees its memory too.
    static void End(CTreeMemory& memory, CXMLAttribut* attribute) noexcept;

    // Ends only what an attribute of an element holds outside of its tree.
    static void ReleaseHeld(CXMLAttribut* attribute) noexcept;

    static const char* Name(const CXMLAttribut* attribute) noexcept {
        return reinterpret_cast<const char*>(attribute->m_nName & ~BITS);
    }
    static const char* Value(const CXMLAttribut* attribute) noexcept {
        return reinterpret_cast<const char*>(attribute->m_nValue);
    }
    static bool Holds(const CXMLAttribut* attribute) noexcept {
        return (attribute->m_nName & ATTRIBUTE_HOLDS) != 0;
    }

    // An attribute that its element finds by hash; a new name makes every index look again.
    static void MarkIndexed(CXMLAttribut* attribute) noexcept {
        attribute->m_nName |= ATTRIBUTE_INDEXED;
    }
    static std::uint64_t RenameCount() noexcept;

    // Show another string in place of the attribute's own, which ends. The attribute takes over the use of
    // a name of its tree, or with `holds` the hold on the string; `held` tells how the old value is kept.
    static void ReplaceName(CXMLAttribut* attribute, const char* name, bool holds) noexcept;
    static void ReplaceValue(CXMLAttribut* attribute, const char* value, bool held) noexcept;

private:
    static const std::uintptr_t ATTRIBUTE_HOLDS = 1;
    static const std::uintptr_t ATTRIBUTE_INDEXED = 2;
    static const std::uintptr_t BITS = 3;

    static void EndName(const char* name, bool held) noexcept;
    static void EndValue(const char* value, bool held) noexcept;

    friend class CXMLAttribut;
};

}  // namespace norvask

#endif
