#include <gtest/gtest.h>

#include <optional>

#include "companion/plain_answers.h"

using namespace quibra;

namespace {

// A line in its parts.
struct Parts {
    explicit Parts(const LimitLine& line) : a(static_cast<uint16_t>(line.a)), b(static_cast<uint16_t>(line.b)) {}

    int a;
    int b;
    int kind = a % 16;
    int rank = a / 16 % 128;
    int question = b / 128;
    int choice = b % 128;
};

// The rules over lists of answers. First every line finds its range, then the groups are gathered whole, then judged.
class PlainEvaluator {
  public:
    explicit PlainEvaluator(const PlainSample& sample) : sample_(sample) {}

    bool Meets(const std::vector<LimitLine>& lines, int flags) const {
        for (int k = 0; k < 16; ++k)
            if ((lines[0].b >> k & 1) && !(flags >> k & 1)) return false;

        std::vector<Group> groups;
        for (size_t i = 1; lines[i].a != 0; ++i) {
            const Parts line(lines[i]), next(lines[i + 1]);
            if (line.kind == 3 || line.kind == 4)
                groups.push_back({line.kind == 4, false});
            else if (line.kind != 1 || groups.empty())
                continue;
            const bool isRange = next.a != 0 && next.kind == 2;
            groups.back().holds |= Holds(line, isRange ? next.choice : line.choice);
        }
        for (const Group& group : groups)
            if (group.holds == group.excludes) return false;
        return true;
    }

  private:
    struct Group {
        bool excludes;
        bool holds;
    };

    bool Holds(const Parts& line, int high) const {
        if (line.question >= 256 || sample_.layout[line.question].Anum <= 0) return false;
        std::vector<int> answers = sample_.answers[line.question];
        if (answers.empty()) answers = {0};
        for (int position = 1; const int answer : answers) {
            const bool looksHere = line.rank == 0 || line.rank == position;
            ++position;
            if (looksHere && line.choice <= answer && answer <= high) return true;
        }
        return false;
    }

    const PlainSample& sample_;
};

// Lines that are mostly sensible, with every kind and every stray bit among them, and a header.
std::vector<LimitLine> RandomLines(std::mt19937& random) {
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const int count = below(4) == 0 ? below(49) : below(6);
    std::vector<LimitLine> lines(1);
    lines[0].a = static_cast<int16_t>(below(3));
    if (below(8) == 0) lines[0].b = static_cast<int16_t>(1 << below(16));
    int question = below(8);
    for (int i = 0; i < count; ++i) {
        const int kind = below(10) == 0 ? below(16) : 1 + below(4);
        if (kind != 2 || below(10) == 0) question = below(20) == 0 ? below(512) : below(8);
        const int rank = below(3) == 0 ? below(below(4) == 0 ? 128 : 4) : 0;
        const int stray = below(20) == 0 ? below(32) << 11 : 0;
        const int choice = below(5) == 0 ? below(128) : below(5);
        const int a = stray | rank * 16 | kind;
        lines.push_back({static_cast<int16_t>(a), static_cast<int16_t>(question * 128 + choice)});
    }
    lines.push_back({0, static_cast<int16_t>(random())});
    return lines;
}

}  // namespace

TEST(Condition, RandomListsOverRandomAnswersFollowTheRules) {
    std::mt19937 random(2026);
    int met = 0;
    const int rounds = 60000;
    for (int round = 0; round < rounds; ++round) {
        const PlainSample sample = RandomSample(random);
        const std::vector<LimitLine> lines = RandomLines(random);
        const int flags = static_cast<int>(random());
        const bool expected = PlainEvaluator(sample).Meets(lines, flags);
        ASSERT_EQ(lmDoC(lines.data(), sample.layout.data(), flags, sample.bits.data()), expected ? 1 : 0) << round;
        met += expected;

        const int qno = static_cast<int>(random() % 8);
        const int rank = random() % 2 == 0 ? 0 : static_cast<int>(random() % 7);
        std::vector<int32_t> counts(128, 3);
        std::vector<int32_t> expectedCounts = counts;
        const int32_t person = VerstTotalC(lines.data(), sample.layout.data(), flags, sample.bits.data(), qno | 0x10000,
                                           counts.data(), rank | 0x10000);
        std::vector<int> answers = sample.answers[qno];
        if (rank > 0)
            answers = rank <= static_cast<int>(answers.size()) ? std::vector{answers[rank - 1]} : std::vector{0};
        if (answers.empty()) answers = {0};
        for (const int answer : answers)
            if (expected && answer < 128) ++expectedCounts[answer];
        ASSERT_EQ(person, expected ? 1 : 0);
        ASSERT_EQ(counts, expectedCounts) << round;
    }
    EXPECT_GT(met, rounds / 5);
    EXPECT_LT(met, rounds * 4 / 5);
}

// Cases in words, each over question 0 with answers 3, 1 of at most 3, question 1 unanswered and question 2 absent.
TEST(Condition, OddListsMeanWhatTheyAreToldToMean) {
    PlainSample sample;
    sample.layout[0] = {3, 0, 3, 0};
    sample.layout[1] = {2, 9, 2, 0};
    sample.bits = {3 | 1 << 3};
    sample.answers[0] = {3, 1};
    const auto line = [](int kind, int rank, int q, int c) {
        return LimitLine{static_cast<int16_t>(rank * 16 + kind), static_cast<int16_t>(q * 128 + c)};
    };
    struct Case {
        const char* name;
        std::vector<LimitLine> lines;
        bool met;
    };
    const std::vector<Case> cases{
        {"nothing", {}, true},
        {"an answer at its position", {line(3, 2, 0, 1)}, true},
        {"an answer at another position", {line(3, 1, 0, 1)}, false},
        {"a range at position 2 alone", {line(3, 2, 0, 2), line(2, 0, 0, 4)}, false},
        {"a range that is met", {line(3, 0, 0, 2), line(2, 5, 0, 4)}, true},
        {"a range on either side of the answers", {line(3, 0, 0, 4), line(2, 0, 0, 7)}, false},
        {"no answer", {line(3, 0, 1, 0)}, true},
        {"no answer at rank 1", {line(3, 1, 1, 0)}, true},
        {"no answer at rank 2", {line(3, 2, 1, 0)}, false},
        {"no answer behind answers", {line(3, 3, 0, 0)}, false},
        {"a range from no answer on", {line(3, 0, 1, 0), line(2, 0, 1, 3)}, true},
        {"an absent question", {line(3, 0, 2, 0)}, false},
        {"not an absent question", {line(4, 0, 2, 0)}, true},
        {"a rank beyond the answers", {line(3, 9, 0, 3)}, false},
        {"an alternative", {line(3, 0, 0, 2), line(1, 0, 0, 1)}, true},
        {"an alternative to what is excluded", {line(4, 0, 0, 2), line(1, 0, 0, 1)}, false},
        {"two requirements, one unmet", {line(3, 0, 0, 3), line(3, 0, 0, 2)}, false},
        {"an alternative in front", {line(1, 0, 0, 2)}, true},
        {"a range in front", {line(2, 0, 0, 2), line(3, 0, 0, 1)}, true},
        {"a kind-0 line with a rank", {line(0, 1, 0, 2), line(2, 0, 0, 2)}, true},
        {"two ends of one range", {line(3, 0, 0, 1), line(2, 0, 0, 2), line(2, 0, 0, 0)}, true},
    };
    for (const Case& one : cases) {
        std::vector<LimitLine> lines(1);
        lines.insert(lines.end(), one.lines.begin(), one.lines.end());
        lines.push_back({});
        EXPECT_EQ(lmDoC(lines.data(), sample.layout.data(), 0, sample.bits.data()), one.met ? 1 : 0) << one.name;
        EXPECT_EQ(PlainEvaluator(sample).Meets(lines, 0), one.met) << one.name;
    }
}
