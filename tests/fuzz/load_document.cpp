// Loads a document from memory, saves it, loads what was saved, and expects that to stay the same.
#include "fuzz/fuzzing.h"

using namespace norvask;
using namespace norvask_fuzz;

namespace {

// Attributes of the default namespace have a name that no parser reads (manager.h).
void RemoveDefaultNamespaces(CXMLNode* root) {
    std::vector<CXMLNode*> nodes(1, root);
    while (!nodes.empty()) {
        CXMLNode* node = nodes.back();
        nodes.pop_back();
        node->SetAttribute("xmlns:", nullptr);
        for (CXMLNode** child = node->GetChildren(); *child; ++child) {
            if ((*child)->GetNodeType() == CXMLNode::NODE_ELEMENT) nodes.push_back(*child);
        }
    }
}

Document LoadSaved(const std::string& saved) {
    Document document = Load(saved, true, false);
    if (!document) Fail("what was saved does not load", saved, "");
    return document;
}

void CheckDocument(CXMLDocument& document) {
    Require(document.GetRoot() != nullptr, "a document without a root");
    RemoveDefaultNamespaces(document.GetRoot());
    const std::string saved = Saved(document, false);
    if (IsError(saved)) return;
    Document clone(document.Clone());
    RequireSame("a clone saves differently", saved, Saved(*clone, false));

    // Reading normalises what saving leaves as it is: line ends in texts, blanks in values. Once.
    Document second = LoadSaved(saved);
    const std::string normalised = Saved(*second, false);
    Document third = LoadSaved(normalised);
    RequireSame("saving again changes the document", normalised, Saved(*third, false));

    // Formatting adds layout only, which loading drops again.
    Document formatted = LoadSaved(Saved(*third, true));
    RequireSame("formatting changes the document", normalised, Saved(*formatted, false));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (IsRefused(data, size)) return 0;
    const std::string xml(reinterpret_cast<const char*>(data), size);
    const Document kept = Load(xml, true, false);
    if (kept) CheckDocument(*kept);
    const Document local = Load(xml, false, false);
    Require((kept == nullptr) == (local == nullptr), "prefixes decide whether a document loads");
    if (local) Saved(*local, true);
    Load(xml, false, true);
    return 0;
}
