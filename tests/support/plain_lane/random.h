// Random numbers for very many documents: quick, and always the same for a seed.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_RANDOM_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_RANDOM_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace norvask_test {

class CRandom {
public:
    explicit CRandom(std::uint64_t seed) noexcept : m_nState(seed) {}

    // SplitMix64.
    std::uint64_t Next() noexcept {
        std::uint64_t mixed = (m_nState += 0x9E3779B97F4A7C15u);
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
        return mixed ^ (mixed >> 31);
    }
    // From 0 to `below` - 1, which must fit 32 bits.
    std::size_t Below(std::size_t below) noexcept {
        return static_cast<std::size_t>(((Next() >> 32) * below) >> 32);
    }
    // True once in so many times.
    bool Once(std::size_t times) noexcept { return Below(times) == 0; }

    template <std::size_t N>
    std::string_view Of(const std::string_view (&choices)[N]) noexcept {
        return choices[Below(N)];
    }

private:
    std::uint64_t m_nState;
};

}  // namespace norvask_test

#endif
