// CXMLSaxAttribut: its strings, copies and assignments, and what a client may do to the attributes
// and to the array that it receives.
#include <functional>
#include <type_traits>

#include "support/recording_handler.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

// An attribute of the client's own.
class CProbe : public CXMLSaxAttribut {
public:
    CProbe(const char* uri, const char* localName, const char* qName, const char* value)
        : CXMLSaxAttribut(uri, localName, qName, value) {}
    CProbe(const CXMLSaxAttribut& other) : CXMLSaxAttribut(other) {}
};

std::string Shown(CXMLSaxAttribut& attribute) {
    return CRecordingHandler::Name(attribute.GetUri(), attribute.GetLocalName(),
                                   attribute.GetQName()) +
           "=" + Quoted(attribute.GetValue());
}

std::string Shown(CXMLSaxAttribut** attributes) {
    std::string line;
    for (; *attributes; ++attributes)
        line += Shown(**attributes) + " ";
    return line;
}

// Hands the attributes of each element to a function.
class CAttributeHandler : public CXMLSaxHandler {
public:
    using Action = std::function<void(const std::string& name, CXMLSaxAttribut** attributes)>;
    explicit CAttributeHandler(Action action) : m_Action(std::move(action)) {}
    void StartElement(const char*, const char*, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        m_Action(qName, attributes);
    }

private:
    Action m_Action;
};

}  // namespace

TEST(CallbackAttribute, HoldsCopiesOfItsStrings) {
    char uri[] = "urn:u", local[] = "k", name[] = "p:k", value[] = "v";
    CProbe probe(uri, local, name, value);
    uri[0] = local[0] = name[0] = value[0] = '#';
    EXPECT_STREQ(probe.GetUri(), "urn:u");
    EXPECT_STREQ(probe.GetLocalName(), "k");
    EXPECT_STREQ(probe.GetQName(), "p:k");
    EXPECT_STREQ(probe.GetValue(), "v");
    EXPECT_TRUE(Same(probe.GetValue(), probe.GetValue()));
}

TEST(CallbackAttribute, TakesNullForAnEmptyString) {
    for (int i = 0; i < 16; ++i) {
        const auto text = [i](int bit) { return i >> bit & 1 ? nullptr : "text"; };
        const auto shown = [i](int bit) { return std::string(i >> bit & 1 ? "" : "text"); };
        CProbe probe(text(0), text(1), text(2), text(3));
        EXPECT_EQ(probe.GetUri(), shown(0));
        EXPECT_EQ(probe.GetLocalName(), shown(1));
        EXPECT_EQ(probe.GetQName(), shown(2));
        EXPECT_EQ(probe.GetValue(), shown(3));
        CProbe copy(probe);
        EXPECT_EQ(Shown(copy), Shown(probe));
    }
}

TEST(CallbackAttribute, CannotBeMadeOrEndedByAClientThatDoesNotDerive) {
    EXPECT_FALSE((std::is_constructible<CXMLSaxAttribut, const char*, const char*, const char*,
                                        const char*>::value));
    EXPECT_FALSE(std::is_destructible<CXMLSaxAttribut>::value);
    EXPECT_TRUE(std::has_virtual_destructor<CProbe>::value);
}

TEST(CallbackAttribute, IsCopiedWithItsStrings) {
    auto first = std::make_unique<CProbe>("u", "l", "q", "v");
    CProbe copy(*first);
    EXPECT_FALSE(Same(copy.GetValue(), first->GetValue()));
    CProbe assigned(nullptr, nullptr, nullptr, nullptr);
    assigned = *first;
    EXPECT_FALSE(Same(assigned.GetUri(), first->GetUri()));
    first.reset();
    EXPECT_EQ(Shown(copy), "{u}l=q=\"v\"");
    EXPECT_EQ(Shown(assigned), "{u}l=q=\"v\"");
    copy = CProbe("", "a", "a", std::string(100000, 'x').c_str());
    EXPECT_EQ(Shown(copy), "a=\"" + std::string(100000, 'x') + "\"");
    copy = assigned;
    EXPECT_EQ(Shown(copy), "{u}l=q=\"v\"");
}

TEST(CallbackAttribute, MayBeAssignedToItself) {
    CProbe probe("u", "l", "q", "v");
    CProbe& same = probe;
    probe = same;
    EXPECT_EQ(Shown(probe), "{u}l=q=\"v\"");
    CXMLSaxAttribut& base = probe;
    base = same;
    EXPECT_EQ(Shown(probe), "{u}l=q=\"v\"");
}

TEST(CallbackAttribute, IsKeptBeyondTheCallbackByACopy) {
    std::vector<CProbe> kept;
    CProbe assigned("", "", "", "");
    CAttributeHandler handler([&](const std::string&, CXMLSaxAttribut** attributes) {
        for (; *attributes; ++attributes) {
            kept.emplace_back(**attributes);
            static_cast<CXMLSaxAttribut&>(assigned) = **attributes;
        }
    });
    std::string xml = "<r xmlns:p='urn:u'>";
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        const std::string number = std::to_string(i);
        xml += "<e p:a" + number + "='" + number + "' b='\xC3\xA9" + number + "'/>";
        expected += "{urn:u}a" + number + "=p:a" + number + "=\"" + number + "\" ";
        expected += "b=\"\xC3\xA9" + number + "\" ";
    }
    LoadMemory(xml + "</r>", handler);
    std::string shown;
    for (CProbe& probe : kept)
        shown += Shown(probe) + " ";
    EXPECT_EQ(shown, expected);
    EXPECT_EQ(Shown(assigned),
              "b=\"\xC3\xA9"
              "999\"");
}

// The next elements show their own attributes, whatever was assigned to those of the one before.
TEST(CallbackAttribute, OfTheLoadMayBeAssignedTo) {
    CProbe own("urn:own", "own", "o:own", "mine");
    std::string shown;
    CAttributeHandler handler([&](const std::string& name, CXMLSaxAttribut** attributes) {
        shown += name + ": " + Shown(attributes);
        if (name == "a") {
            *attributes[0] = own;
            *attributes[1] = *attributes[0];
            *attributes[2] = *attributes[2];
            shown += "-> " + Shown(attributes);
        } else if (name == "b") {
            std::swap(attributes[0], attributes[1]);
            *attributes[0] = *attributes[1];
            shown += "-> " + Shown(attributes);
        }
    });
    LoadMemory("<r><a k='1' l='2' m='3'/><b k='4' l='5' m='6'/><c k='7' l='8' m='9'/></r>",
               handler);
    EXPECT_EQ(shown,
              "r: a: k=\"1\" l=\"2\" m=\"3\" "
              "-> {urn:own}own=o:own=\"mine\" {urn:own}own=o:own=\"mine\" m=\"3\" "
              "b: k=\"4\" l=\"5\" m=\"6\" -> k=\"4\" k=\"4\" m=\"6\" "
              "c: k=\"7\" l=\"8\" m=\"9\" ");
    EXPECT_EQ(Shown(own), "{urn:own}own=o:own=\"mine\"");
}

TEST(CallbackAttribute, OfTheLastElementMayBeAssignedTo) {
    CProbe own("urn:own", "own", "o:own", std::string(1000, 'x').c_str());
    for (const bool throws : {false, true}) {
        CAttributeHandler handler([&](const std::string&, CXMLSaxAttribut** attributes) {
            *attributes[0] = own;
            if (throws) throw 42;
        });
        if (throws) {
            EXPECT_THROW(LoadMemory("<r k='v'/>", handler), int);
        } else {
            LoadMemory("<r k='v'/>", handler);
        }
    }
}

TEST(CallbackAttribute, ArrayMayBeRearranged) {
    CProbe own("", "own", "own", "mine");
    std::string shown;
    CAttributeHandler handler([&](const std::string& name, CXMLSaxAttribut** attributes) {
        shown += name + ": " + Shown(attributes);
        const std::size_t count = Count(attributes);
        if (name == "a") {
            std::swap(attributes[0], attributes[count - 1]);
        } else if (name == "b") {
            for (std::size_t i = 0; i < count; ++i)
                attributes[i] = nullptr;
        } else if (name == "c") {
            for (std::size_t i = 1; i < count; ++i)
                attributes[i] = attributes[0];
        } else if (name == "d") {
            for (std::size_t i = 0; i <= count; ++i)
                attributes[i] = &own;  // the end, too
        }
    });
    std::string xml = "<r>";
    std::string expected = "r: ";
    for (const std::string name : {"a", "b", "c", "d", "e"}) {
        xml += "<" + name + " k='1' l='2' m='3'/>";
        expected += name + ": k=\"1\" l=\"2\" m=\"3\" ";
    }
    LoadMemory(xml + "<f k='only'/><g/></r>", handler);
    EXPECT_EQ(shown, expected + "f: k=\"only\" g: ");
    EXPECT_EQ(Shown(own), "own=\"mine\"");
}

TEST(CallbackAttribute, MayBeOneOfThousandsOnAnElement) {
    const int count = 20000;
    std::string xml = "<r";
    std::string expected;
    for (int i = 0; i < count; ++i) {
        xml += " a" + std::to_string(i) + "='" + std::to_string(i * 7) + "'";
        expected += "a" + std::to_string(i) + "=\"" + std::to_string(i * 7) + "\" ";
    }
    std::vector<std::string> shown;
    CAttributeHandler handler([&](const std::string&, CXMLSaxAttribut** attributes) {
        shown.push_back(Shown(attributes));
    });
    LoadMemory("<x>" + xml + "><a k='1'/></r>" + xml + "/></x>", handler);
    ASSERT_EQ(shown.size(), 4u);
    EXPECT_EQ(shown[0], "");
    EXPECT_TRUE(shown[1] == expected);
    EXPECT_EQ(shown[2], "k=\"1\" ");
    EXPECT_TRUE(shown[3] == expected);
}

// Values of one element lie beside each other, however long they are.
TEST(CallbackAttribute, MayHaveAVeryLongValue) {
    for (const std::size_t length : {0u, 1u, 511u, 512u, 513u, 65536u, 3000000u}) {
        std::string wide;
        while (wide.size() < length)
            wide += "\xE2\x82\xAC\xF0\x9F\x98\x80z";
        const std::string xml = "<r a='1' b='" + std::string(length, 'x') + "' c='2' d='" + wide +
                                "' e='3'><a a='4'/></r>";
        std::vector<std::string> shown;
        CAttributeHandler handler([&](const std::string&, CXMLSaxAttribut** attributes) {
            shown.push_back(Shown(attributes));
        });
        LoadMemory(xml, handler);
        ASSERT_EQ(shown.size(), 2u);
        EXPECT_TRUE(shown[0] == "a=\"1\" b=\"" + std::string(length, 'x') + "\" c=\"2\" d=\"" +
                                    wide + "\" e=\"3\" ")
            << length;
        EXPECT_EQ(shown[1], "a=\"4\" ");
    }
}

// All strings of an element are there at once, for as long as its callback runs.
TEST(CallbackAttribute, StaysAsItIsWhileOtherLoadsRun) {
    std::string before, behind;
    CRecordingHandler inner;
    CAttributeHandler handler([&](const std::string&, CXMLSaxAttribut** attributes) {
        before += Shown(attributes);
        LoadMemory("<q a='other' b='" + std::string(10000, 'y') + "'/>", inner);
        LoadMemory("<q a='other'/>");
        behind += Shown(attributes);
    });
    LoadMemory("<r a='1' b='2'><e c='3'/></r>", handler);
    EXPECT_EQ(before, "a=\"1\" b=\"2\" c=\"3\" ");
    EXPECT_EQ(behind, before);
}
