// Internal. CAttributeAccess: the way from an attribute to its two strings.
//
//   attribute in an element      a name of the tree, with one use, and a value in the tree's memory
//   ... that was assigned to     two strings wherever they lie, retained ("holds")
//   attribute of an application  the same
//
// Both strings are retained or neither is. The low bits of the name tell, and whether the attribute
// is in the index of its tree (attribute_index.h).
#ifndef NORVASK_TREE_ATTRIBUTE_ACCESS_H
#define NORVASK_TREE_ATTRIBUTE_ACCESS_H

#include <cstdint>
#include <new>

#include "norvask/attribut.h"
#include "tree/memory/name_use.h"

namespace norvask {

class CAttributeAccess {
public:
    static CTreeString Name(const CXMLAttribut* attribute) noexcept {
        return CTreeString::At(reinterpret_cast<const char*>(attribute->m_nName & ~BITS));
    }
    static CTreeString Value(const CXMLAttribut* attribute) noexcept {
        return CTreeString::At(reinterpret_cast<const char*>(attribute->m_nValue));
    }
    static bool Holds(const CXMLAttribut* attribute) noexcept {
        return (attribute->m_nName & HOLDS) != 0;
    }
    static bool IsIndexed(const CXMLAttribut* attribute) noexcept {
        return (attribute->m_nName & INDEXED) != 0;
    }

    // What an attribute keeps. Nothing is retained or freed.
    static void SetName(CXMLAttribut* attribute, CTreeString name, bool holds) noexcept {
        attribute->m_nName = Number(name) | (holds ? HOLDS : 0) | (attribute->m_nName & INDEXED);
    }
    static void SetValue(CXMLAttribut* attribute, CTreeString value) noexcept {
        attribute->m_nValue = Number(value);
    }
    static void SetIndexed(CXMLAttribut* attribute, bool isIndexed) noexcept {
        attribute->m_nName = (attribute->m_nName & ~INDEXED) | (isIndexed ? INDEXED : 0);
    }

    // An attribute in the tree's memory, which keeps the use of the name and the value. Throws
    // std::bad_alloc, and then both are still the caller's.
    static CXMLAttribut* New(CTree& tree, CNameUse& name, CNewString& value) {
        void* const block = tree.Arena().AllocatePlain(sizeof(CXMLAttribut));
        return new (block)
            CXMLAttribut(CXMLAttribut::SOwned(), name.Keep().Text(), value.Keep().Text());
    }

private:
    static const std::uintptr_t HOLDS = 1;
    static const std::uintptr_t INDEXED = 2;
    static const std::uintptr_t BITS = 3;
    static_assert(CTreeString::ALIGNMENT > BITS, "the low bits of a name must be free");

    static std::uintptr_t Number(CTreeString string) noexcept {
        return reinterpret_cast<std::uintptr_t>(string.Text());
    }
};

}  // namespace norvask

#endif
