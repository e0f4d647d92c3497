// The fast lane against the parser, on one document after the other.
//
// The lane reads a document alone, as events and as trees. What it takes the parser must accept and
// tell the same of; of what it leaves, it must have told a beginning of what the parser tells. This
// is as fast as one run of the parser, and where the lane told nothing, faster. Some documents, in
// turn, are loaded as callers load them, with the lane and without, in one of all ways.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_COMPARISON_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_COMPARISON_H

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "load/plain/fast_lane.h"
#include "support/plain_lane/outcome.h"
#include "support/plain_lane/parser_run.h"

namespace norvask_test {

struct SLaneCounts {
    std::uint64_t documents = 0;   // compared
    std::uint64_t taken = 0;       // read by the lane to the end
    std::uint64_t leftInside = 0;  // left when something had been told
    std::uint64_t readings = 0;    // by the lane alone, in all kinds and with all windows
    std::uint64_t parserRuns = 0;
    std::uint64_t loads = 0;  // as callers load, each with the lane and without

    void Add(const SLaneCounts& other) {
        documents += other.documents;
        taken += other.taken;
        leftInside += other.leftInside;
        readings += other.readings;
        parserRuns += other.parserRuns;
        loads += other.loads;
    }
};

// Documents that the parser must not be given: such as name addresses, which it would read, and
// such as expand a few bytes to very many.
inline bool IsOutOfBounds(const std::string& document) {
    const auto count = [&](const char* part) {
        std::size_t found = 0;
        for (std::size_t at = document.find(part); at != std::string::npos;
             at = document.find(part, at + 1))
            ++found;
        return found;
    };
    if (document.find("!ENTITY") != std::string::npos && (count("!ENTITY") > 2 || count("&") > 30))
        return true;
    if (document.find("://") == std::string::npos && document.find("file:") == std::string::npos)
        return false;
    return document.find("SYSTEM") != std::string::npos ||
           document.find("PUBLIC") != std::string::npos ||
           document.find("ocation") != std::string::npos;
}

class CLaneComparison {
public:
    CLaneComparison() : m_Trees{{false, true, {}}, {false, false, {}}} {}
    CLaneComparison(const CLaneComparison&) = delete;
    CLaneComparison& operator=(const CLaneComparison&) = delete;
    ~CLaneComparison() {
        if (!m_FileName.empty()) std::remove(m_FileName.c_str());
    }

    const SLaneCounts& Counts() const noexcept { return m_Counts; }
    // What was found, after a comparison that returned false.
    const std::string& Difference() const noexcept { return m_Difference; }
    // Whether the lane took the last document as events.
    bool WasTaken() const noexcept { return m_bTaken; }

    // Reads with the lane alone, with each of the windows. Returns whether all is the same.
    bool Same(const std::string& document, const std::vector<std::size_t>& windows) {
        if (document.empty()) return true;
        const CExactBlock block(document.data(), document.size());
        ++m_Counts.documents;
        m_bTaken = false;
        bool counted = false;
        bool parsed = false;
        bool accepted = false;
        for (const std::size_t window : windows) {
            ReadWithLane(block, window);
            const SReading& events = m_Readings[0];
            if (!counted) {
                counted = true;
                m_bTaken = events.taken;
                if (events.taken) {
                    ++m_Counts.taken;
                } else if (m_LaneEvents.Events() > 1) {
                    ++m_Counts.leftInside;
                }
            }
            if (!parsed && (events.taken || events.threw || m_Readings[1].Tells() ||
                            m_Readings[2].Tells() || m_LaneEvents.Events() > 0)) {
                parsed = true;
                ++m_Counts.parserRuns;
                // All of a run is there for the windows to come.
                m_Trees[0].wanted = m_Trees[1].wanted =
                    m_Readings[1].Tells() || m_Readings[2].Tells() || windows.size() > 1;
                accepted = m_Parser.Read(block.Bytes(), block.Length(), m_Trees);
            }
            if (parsed && !IsReadingSame(accepted, window)) return false;
            if (window != windows.front() && !IsStreamSame(block, window)) return false;
        }
        return true;
    }

    // Loads as callers do, with the lane and without it. Returns whether that is the same.
    bool SameLoads(const std::string& document, SLoadMode mode, bool fromFile) {
        if (document.empty()) return true;
        ++m_Counts.loads;
        if (fromFile) {
            WriteFile(document);
            mode.fileName = m_FileName.c_str();
        }
        const CExactBlock block(document.data(), document.size());
        const std::string alone = Outcome(block, mode, false);
        ELane lane = ELane::NOT_TRIED;
        const std::string withLane = Outcome(block, mode, true, &lane);
        m_bLoadTaken = lane == ELane::TAKEN;
        if (alone == withLane) return true;
        SetDifference("load (" + mode.Name() + ")", alone, withLane);
        return false;
    }
    bool WasLoadTaken() const noexcept { return m_bLoadTaken; }

    // The same in a way that a number chooses.
    bool SameLoadsInSomeWay(const std::string& document, std::uint64_t number) {
        static const std::size_t WINDOWS[] = {0, 0, 1, 2, 3, 5, 16, 64, 257, 4096};
        const auto choose = [&](std::uint64_t below) {
            const std::uint64_t chosen = number % below;
            number /= below;
            return chosen;
        };
        SLoadMode mode;
        mode.kind = static_cast<SLoadMode::EKind>(choose(3));
        mode.validation = static_cast<SLoadMode::EValidation>(choose(3));
        mode.window = WINDOWS[choose(sizeof(WINDOWS) / sizeof(WINDOWS[0]))];
        const bool fromFile = choose(8) == 0;
        if (mode.kind == SLoadMode::EVENTS && choose(3) == 0) {
            mode.deed = static_cast<EDeed>(1 + choose(static_cast<std::uint64_t>(EDeed::LAST)));
            mode.event = static_cast<std::size_t>(choose(24));
        }
        return SameLoads(document, mode, fromFile);
    }

private:
    // How the lane read a document in one kind: events, tree with prefixes, tree.
    struct SReading {
        bool taken = false;
        bool threw = false;
        std::string bytes;  // of a tree that was taken, or of what was thrown

        bool Tells() const noexcept { return taken || threw; }
    };

    // The bytes of a block as a file gives them: they have to be read, and read once more.
    class CStreamBytes final : public CByteSource {
    public:
        explicit CStreamBytes(const CExactBlock& block) noexcept
            : m_Memory(block.Bytes(), block.Length()) {}

        std::size_t Size() const noexcept override { return m_Memory.Size(); }
        std::size_t Read(char* to, std::size_t room) override { return m_Memory.Read(to, room); }
        bool IsGood() const noexcept override { return true; }
        const char* Bytes() const noexcept override { return nullptr; }
        bool Rewind() noexcept override { return m_Memory.Rewind(); }

    private:
        CMemoryBytes m_Memory;
    };

    template <typename Source>
    void ReadEvents(Source&& source, std::size_t window, SReading& reading, CEventLog& events) {
        ++m_Counts.readings;
        events.Clear();
        Read(reading, [&](SReading&) {
            CEventForwarder forwarder(events);
            return ReadPlainEvents(source, window, forwarder);
        });
    }
    // Where the lane reads from makes no difference, though it learns in another way that all is
    // UTF-8.
    bool IsStreamSame(const CExactBlock& block, std::size_t window) {
        SReading reading;
        ReadEvents(CStreamBytes(block), window, reading, m_StreamEvents);
        const SReading& memory = m_Readings[0];
        if (reading.taken == memory.taken && reading.threw == memory.threw &&
            reading.bytes == memory.bytes && m_StreamEvents.Bytes() == m_LaneEvents.Bytes())
            return true;
        SetDifference(
            "events from a stream, not as from memory (window " + std::to_string(window) + ")",
            m_LaneEvents.Bytes(), m_StreamEvents.Bytes());
        return false;
    }

    void ReadWithLane(const CExactBlock& block, std::size_t window) {
        m_Counts.readings += 2;
        ReadEvents(CMemoryBytes(block.Bytes(), block.Length()), window, m_Readings[0],
                   m_LaneEvents);
        for (int i = 1; i < 3; ++i) {
            Read(m_Readings[i], [&](SReading& reading) {
                CMemoryBytes source(block.Bytes(), block.Length());
                CTreeBuilder builder;
                const bool taken = ReadPlainTree(source, window, i == 1, builder);
                if (taken) {
                    CXMLDocument* const document = builder.TakeDocument();
                    CTreeDump::Append(reading.bytes, document);
                    if (document != nullptr) document->Delete();
                }
                return taken;
            });
        }
    }
    template <typename How>
    static void Read(SReading& reading, How how) {
        reading.taken = false;
        reading.threw = false;
        reading.bytes.clear();
        try {
            reading.taken = how(reading);
        } catch (CXMLException& e) {
            reading.threw = true;
            AppendError(reading.bytes, e);
        } catch (const std::exception& e) {
            reading.threw = true;
            reading.bytes = std::string("std::exception ") + e.what();
        }
    }

    bool IsReadingSame(bool accepted, std::size_t window) {
        const std::string with = " (window " + std::to_string(window) + ")";
        const SReading& events = m_Readings[0];
        if (events.threw) {
            SetDifference("the lane throws, as events" + with, "", events.bytes);
            return false;
        }
        if (events.taken && !accepted) {
            SetDifference("taken, as events, and the parser refuses it" + with, m_Parser.Events(),
                          m_LaneEvents.Bytes());
            return false;
        }
        if (events.taken ? m_LaneEvents.Bytes() != m_Parser.Events()
                         : !IsBeginning(m_LaneEvents.Bytes(), m_Parser.Events())) {
            SetDifference(
                (events.taken ? "events of what was taken" : "events of what was left") + with,
                m_Parser.Events(), m_LaneEvents.Bytes());
            return false;
        }
        for (int i = 1; i < 3; ++i) {
            const SReading& tree = m_Readings[i];
            const std::string& parsers = m_Trees[i - 1].bytes;
            if (tree.taken && !accepted) {
                SetDifference("taken, as a tree, and the parser refuses it" + with, parsers,
                              tree.bytes);
                return false;
            }
            if (tree.Tells() && tree.bytes != parsers) {
                SetDifference((i == 1 ? "tree with prefixes" : "tree") + with, parsers, tree.bytes);
                return false;
            }
        }
        return true;
    }
    static bool IsBeginning(const std::string& beginning, const std::string& whole) {
        return beginning.size() <= whole.size() &&
               whole.compare(0, beginning.size(), beginning) == 0;
    }

    void SetDifference(const std::string& what, const std::string& parsers,
                       const std::string& lanes) {
        const std::size_t both = std::min(parsers.size(), lanes.size());
        std::size_t at = 0;
        while (at < both && parsers[at] == lanes[at])
            ++at;
        const std::size_t from = at < 100 ? 0 : at - 100;
        const std::size_t MOST = 400;
        m_Difference =
            what + ", from byte " + std::to_string(at) +
            " on\n  parser: " + Readable(parsers.substr(std::min(from, parsers.size()), MOST)) +
            "\n  lane:   " + Readable(lanes.substr(std::min(from, lanes.size()), MOST)) + "\n";
    }

    void WriteFile(const std::string& document) {
        if (m_FileName.empty()) {
            const char* directory = std::getenv("TMPDIR");
            std::string pattern =
                std::string(directory != nullptr ? directory : "/tmp") + "/norvask_lane_XXXXXX";
            const int handle = mkstemp(&pattern[0]);
            if (handle < 0) {
                std::perror("mkstemp");
                std::abort();
            }
            close(handle);
            m_FileName = pattern;
        }
        std::ofstream(m_FileName, std::ios::binary | std::ios::trunc) << document;
    }

    CParserRun m_Parser;
    CEventLog m_LaneEvents;
    CEventLog m_StreamEvents;
    SReading m_Readings[3];
    SBuiltTree m_Trees[2];
    SLaneCounts m_Counts;
    std::string m_Difference;
    std::string m_FileName;
    bool m_bTaken = false;
    bool m_bLoadTaken = false;
};

}  // namespace norvask_test

#endif
