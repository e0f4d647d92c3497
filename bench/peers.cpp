#include "peers.h"

#include <stdexcept>

#include "callbacks.h"
#include "heap.h"
#include "measures.h"
#include "norvask/norvask.h"
#include "trees.h"

namespace norvask_bench {

namespace {

struct SNotSaved {
    const char* peer;
    const char* document;
    const char* reason;
};

constexpr SNotSaved kNotSaved[] = {
    {kTinyXml2, DOCTYPE_DOCUMENT,
     "it takes the internal DTD apart and writes what no parser reads back"},
};

std::string Where(const char* peer, const SDocument& document) {
    return std::string(peer) + ", " + document.name;
}

void Expect(std::size_t expected, std::size_t found, const std::string& what) {
    if (expected == found) return;
    throw std::runtime_error(what + ": " + std::to_string(found) + " elements instead of " +
                             std::to_string(expected));
}

template <class Tree>
std::string Saved(const Tree& tree, bool format) {
    std::string text;
    CSink sink(&text);
    tree.Save(sink, format);
    return text;
}

bool IsReadAgain(const std::string& text, std::size_t elements) {
    try {
        return CountReportedElements(text) == elements;
    } catch (const std::runtime_error&) {
        return false;
    }
}

template <class Tree>
void CheckTree(const char* peer, const SDocument& document, std::size_t elements) {
    const std::string where = Where(peer, document);
    const Tree tree(document.text);
    Expect(elements, tree.CountElements(), where + ", loaded");
    const Tree copy(tree);
    Expect(elements, copy.CountElements(), where + ", cloned");
    const bool reads =
        IsReadAgain(Saved(tree, false), elements) && IsReadAgain(Saved(copy, true), elements);
    const bool excused = ReasonNotToSave(peer, document.name) != nullptr;
    if (!reads && !excused) throw std::runtime_error(where + ": what it saved does not load again");
    if (reads && excused) throw std::runtime_error(where + ": it does save this document");
}

// A load that keeps prefixes keeps a default namespace under the name "xmlns:", which cannot be
// read back: whoever saves such a tree renames it.
void RenameDefaultNamespaces(norvask::CXMLNode& node) {
    for (norvask::CXMLAttribut** attribute = node.GetAttributes(); *attribute != nullptr;
         ++attribute) {
        if ((*attribute)->GetName() == std::string("xmlns:")) (*attribute)->SetName("xmlns");
    }
    for (norvask::CXMLNode** child = node.GetChildren(); *child != nullptr; ++child) {
        if ((*child)->GetNodeType() == norvask::CXMLNode::NODE_ELEMENT) {
            RenameDefaultNamespaces(**child);
        }
    }
}

void CheckNorvask(const char* peer, const SDocument& document, std::size_t elements) {
    const std::string where = Where(peer, document);
    const CNorvaskTree tree(document.text);
    Expect(elements, tree.CountElements(), where + ", loaded");
    RenameDefaultNamespaces(*tree.Document().GetRoot());
    const CNorvaskTree copy(tree);
    Expect(elements, copy.CountElements(), where + ", cloned");
    for (const bool format : {false, true}) {
        const std::string saved = Saved(tree, format);
        if (Saved(copy, format) != saved) {
            throw std::runtime_error(where + ": a clone is not saved like its source");
        }
        const CNorvaskTree again(saved);
        Expect(elements, again.CountElements(), where + ", saved and loaded again");
        RenameDefaultNamespaces(*again.Document().GetRoot());
        if (Saved(again, format) != saved) {
            throw std::runtime_error(where + ": a second round changes what is saved");
        }
    }
}

void CheckParser(const char* peer, const SDocument& document, std::size_t elements) {
    const CParserAlone parsed(document.text);
    static_cast<void>(parsed);
    Expect(elements, CountReportedElements(document.text), Where(peer, document));
}

template <class Tree>
SPeer MakePeer(const char* name, void (*check)(const char*, const SDocument&, std::size_t)) {
    return {name, check, RunLoad<Tree>, RunSave<Tree>, RunClone<Tree>, MeasureHeap<Tree>};
}

}  // namespace

const std::vector<SPeer>& Peers() {
    static const std::vector<SPeer> peers = {
        MakePeer<CNorvaskTree>(kNorvask, CheckNorvask),
        {kParser, CheckParser, RunLoad<CParserAlone>, nullptr, nullptr, nullptr},
        MakePeer<CXercesTree>(kXercesDom, CheckTree<CXercesTree>),
        MakePeer<CLibxml2Tree>(kLibxml2, CheckTree<CLibxml2Tree>),
        MakePeer<CTinyXml2Tree>(kTinyXml2, CheckTree<CTinyXml2Tree>),
        MakePeer<CPugixmlTree>(kPugixml, CheckTree<CPugixmlTree>),
    };
    return peers;
}

const std::vector<SReader>& Readers() {
    static const std::vector<SReader> readers = {
        {kNorvask, RunLoad<CNorvaskIdle>, RunLoad<CNorvaskReading>},
        // The same floor for both, and what the reading client costs on it.
        {kParser, RunLoad<CParserAlone>, RunLoad<CParserAlone>},
        {PARSER_READING, nullptr, RunLoad<CParserReading>},
        {kLibxml2, RunLoad<CLibxml2Idle>, RunLoad<CLibxml2Reading>},
    };
    return readers;
}

const char* ReasonNotToSave(const char* peer, const std::string& document) {
    for (const SNotSaved& entry : kNotSaved) {
        if (std::string(entry.peer) == peer && entry.document == document) return entry.reason;
    }
    return nullptr;
}

}  // namespace norvask_bench
