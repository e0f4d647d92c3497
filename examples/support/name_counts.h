// How often each name occurs, in little memory however many names there are.
#ifndef NORVASK_EXAMPLES_NAME_COUNTS_H
#define NORVASK_EXAMPLES_NAME_COUNTS_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

// Counts the first ten thousand names each for itself. A document that makes up more of them, or
// very long ones, has these counted together.
class CNameCounts {
public:
    using Count = std::pair<std::string, std::size_t>;

    void Add(const char* name) {
        ++m_Total;
        const std::size_t length = std::strlen(name);
        if (length > kLongest) {
            ++m_Others;
            return;
        }
        m_Name.assign(name, length);  // one string for all look-ups: no allocation each time
        const auto known = m_Counts.find(m_Name);
        if (known != m_Counts.end()) {
            ++known->second;
        } else if (m_Counts.size() < kMostNames) {
            m_Counts.emplace(m_Name, 1);
        } else {
            ++m_Others;
        }
    }

    std::size_t Total() const { return m_Total; }
    std::size_t Names() const { return m_Counts.size(); }  // that are counted each for itself
    std::size_t Others() const { return m_Others; }        // counted together

    // The most frequent names, names of the same frequency in the order of the alphabet.
    std::vector<Count> MostFrequent(std::size_t most) const {
        std::vector<Count> counts(m_Counts.begin(), m_Counts.end());
        std::sort(counts.begin(), counts.end(), [](const Count& a, const Count& b) {
            return a.second != b.second ? a.second > b.second : a.first < b.first;
        });
        counts.resize(std::min(counts.size(), most));
        return counts;
    }

private:
    static constexpr std::size_t kMostNames = 10'000;
    static constexpr std::size_t kLongest = 200;

    std::unordered_map<std::string, std::size_t> m_Counts;
    std::string m_Name;
    std::size_t m_Total = 0;
    std::size_t m_Others = 0;
};

#endif
