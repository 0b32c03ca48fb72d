#include "inspection/NameMatch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

using namespace Corvid::Inspection;

namespace {

TEST(NameMatch, comparesNames) {
    const auto compare = [](const char* wanted, const char* name) {
        return NameMatch(wanted).compare(name);
    };
    EXPECT_EQ(compare("SampleRate", "SampleRate"), NameMatch::same);
    EXPECT_EQ(compare("samplerate", "SampleRate"), NameMatch::alike);
    EXPECT_EQ(compare("Sample Rate", "SampleRate"), NameMatch::alike);
    EXPECT_EQ(compare("sample-rate", "Sample_Rate"), NameMatch::alike);
    EXPECT_EQ(compare("rate", "SampleRate"), NameMatch::part);
    EXPECT_EQ(compare("rate sample", "SampleRate"), NameMatch::part) << "words in any order";
    EXPECT_EQ(compare("le-ra", "SampleRate"), NameMatch::part) << "one word";
    EXPECT_EQ(compare("ra-le", "SampleRate"), NameMatch::none);
    EXPECT_EQ(compare("rate sampled", "SampleRate"), NameMatch::none) << "each of them";
    EXPECT_EQ(compare("SampleRates", "SampleRate"), NameMatch::none);
    EXPECT_EQ(compare("", "SampleRate"), NameMatch::none);
    EXPECT_EQ(compare("-", "-"), NameMatch::none) << "nothing to compare";
    EXPECT_EQ(compare("rate", ""), NameMatch::none);
}

/// The definition, without a table.
std::size_t naiveDistance(const std::string& a, const std::string& b) {
    if (a.empty() || b.empty()) {
        return a.size() + b.size();
    }
    const std::string restA = a.substr(1);
    const std::string restB = b.substr(1);
    std::size_t best = std::min({naiveDistance(restA, b) + 1, naiveDistance(a, restB) + 1,
                                 naiveDistance(restA, restB) + (a[0] == b[0] ? 0 : 1)});
    if (a.size() > 1 && b.size() > 1 && a[0] == b[1] && a[1] == b[0]) {
        best = std::min(best, naiveDistance(a.substr(2), b.substr(2)) + 1);
    }
    return best;
}

TEST(EditDistance, isThatOfItsDefinition) {
    std::mt19937 random(20240101);
    const auto text = [&random] {
        std::string letters(random() % 6, 'a');
        std::generate(letters.begin(), letters.end(),
                      [&random] { return static_cast<char>('a' + random() % 3); });
        return letters;
    };
    for (int i = 0; i != 2000; ++i) {
        const std::string a = text();
        const std::string b = text();
        EXPECT_EQ(editDistance(a, b, 99), naiveDistance(a, b)) << a << " " << b;
        const std::size_t most = random() % 3;
        EXPECT_EQ(editDistance(a, b, most) > most, naiveDistance(a, b) > most) << a << " " << b;
    }
}

TEST(NearNames, areTheMostSimilarOnesFirst) {
    NearNames names("Prefase");
    for (const char* name : {"Preface", "Surface", "Prefaces", "preface", "Package", "Preface"}) {
        names.offer(name);
    }
    EXPECT_EQ(names.best(), (std::vector<std::string>{"Preface", "preface", "Prefaces"}));
}

TEST(NearNames, areFiveAtMost) {
    NearNames names("track");
    for (const char* name : {"trac", "trak", "tack", "rack", "tracks", "tracker", "truck"}) {
        names.offer(name);
    }
    EXPECT_EQ(names.best().size(), 5U);
    EXPECT_TRUE(NearNames("").best().empty());
}

} // namespace
