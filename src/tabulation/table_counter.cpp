#include "tabulation/table_counter.h"

#include <deque>
#include <numeric>
#include <optional>

#include "conditions/block_condition.h"
#include "conditions/limit_lists.h"

namespace quibra {

namespace {

struct Range {
    int from;
    int to;  // included
    int Count() const { return to - from + 1; }
};

// Figures of a range of questions under a range of limits.
class Tally {
  public:
    Tally(Range questions, Range limits)
        : questions_(questions), limits_(limits), figures_(static_cast<size_t>(questions.Count() * limits.Count())) {}

    Figures& At(int q, int L) {
        return figures_[static_cast<size_t>((q - questions_.from) * limits_.Count() + L - limits_.from)];
    }
    Range Questions() const { return questions_; }
    Range Limits() const { return limits_; }

  private:
    Range questions_;
    Range limits_;
    std::vector<Figures> figures_;
};

// From the figures of one limit to the same figure of the next.
constexpr ptrdiff_t kLimitStride = sizeof(Figures) / sizeof(qint32);

}  // namespace

struct TableCounter::Impl {
    Impl(const Survey& survey, const TotalOption& option, const BitKernels& kernels);
    int FieldCount() const;

    void CountBlock(qint32 first, int count, Tally& tally);
    void CountQuestionBlock(int q, const BlockMask& base, Figures* figures);
    BlockCondition Joined(int q, int L) const;

    const Survey& survey;
    const TotalOption& option;
    Range questions;
    Range limits;
    const BitKernels& kernels;
    BlockCondition whole;
    std::deque<BlockCondition> ofQuestion;  // by question from FromQno on
    std::deque<BlockCondition> ofLimit;
    bool apart = true;  // every condition stands alone: masks can be joined instead of lists
    std::optional<SamplePlanes> planes;
    std::vector<BlockMask> columns;  // of the block in work, by limit of the tally
    Tally shared;
    qint32 done = 0;  // samples the shared tally has seen
};

TableCounter::Impl::Impl(const Survey& theSurvey, const TotalOption& theOption, const BitKernels& theKernels)
    : survey(theSurvey),
      option(theOption),
      questions{option.FromQno, option.ToQno},
      limits{0, option.LimitCount - 1},
      kernels(theKernels),
      whole(survey, JoinLimits({option.Limits.Column(0)})),
      shared(questions, limits) {
    for (int q = questions.from; q <= questions.to; ++q)
        ofQuestion.emplace_back(survey, JoinLimits({survey.QLimit.Column(q)}));
    for (int L = 0; L <= limits.to; ++L)
        ofLimit.emplace_back(survey, JoinLimits({option.Limits.Column(L + 1)}));
    for (int column = 0; column <= option.LimitCount; ++column)
        apart = apart && StandsAlone(option.Limits.Column(column));
    planes.emplace(survey, FieldCount(), kernels);
}

// Distinct ones: a cross names the fields of one question in every column.
int TableCounter::Impl::FieldCount() const {
    FieldsByQuestion fields{};
    whole.AddFields(fields);
    for (const BlockCondition& condition : ofQuestion)
        condition.AddFields(fields);
    for (const BlockCondition& condition : ofLimit)
        condition.AddFields(fields);
    for (int q = questions.from; q <= questions.to; ++q)
        fields[static_cast<size_t>(q)] = survey.QIdx[q].Anum;
    return std::accumulate(fields.begin(), fields.end(), 0);
}

BlockCondition TableCounter::Impl::Joined(int q, int L) const {
    return BlockCondition(survey,
                          JoinLimits({survey.QLimit.Column(q), option.Limits.Column(0), option.Limits.Column(L + 1)}));
}

// Adds the block's figures of question q to those from `figures` on, one element a column.
void TableCounter::Impl::CountQuestionBlock(int q, const BlockMask& base, Figures* figures) {
    const AnswerLayoutRec& question = survey.QIdx[q];
    const int words = planes->Words();
    const int columnCount = static_cast<int>(columns.size());
    const uint64_t* const masks = columns[0].data();
    kernels.countMask(base.data(), masks, columnCount, words, &figures->persons, kLimitStride);

    const int rank = std::max<int>(option.Rank, 0);
    const int last = rank > 0 ? rank : question.Anum;
    BlockMask unanswered{};     // no answer at the position looked at
    BlockMask answered = base;  // an answer at every position so far
    bool left = last <= question.Anum;
    if (!left || last == 0) unanswered = base;
    for (int position = 0; left && position < last; ++position) {
        const uint64_t* field = planes->Field(question.BitStart + position * question.BitWidth, question.BitWidth);
        if (rank == 0 || position + 1 == rank)
            kernels.countChoices(field, question.BitWidth, std::min<int>(survey.Questions[q].ChoiceCount, kMaxChoices),
                                 answered.data(), masks, columnCount, words, figures->counts, kLimitStride);
        uint64_t anyLeft = 0;
        for (int w = 0; w < words; ++w) {
            const auto at = static_cast<size_t>(w);
            uint64_t any = 0;
            for (int p = 0; p < question.BitWidth; ++p)
                any |= field[p * kPlaneWords + w];
            if (position == 0 || rank > 0) unanswered[at] |= answered[at] & ~any;
            answered[at] &= any;
            anyLeft |= answered[at];
        }
        left = anyLeft != 0;
    }
    kernels.countMask(unanswered.data(), masks, columnCount, words, figures->counts, kLimitStride);
}

void TableCounter::Impl::CountBlock(qint32 first, int count, Tally& tally) {
    planes->Load(first, count);
    const Range of = tally.Limits();
    columns.assign(static_cast<size_t>(of.Count()), planes->Valid());
    BlockMask met = planes->Valid();
    if (apart) {
        whole.Restrict(*planes, met);
        for (int L = of.from; L <= of.to; ++L)
            ofLimit[static_cast<size_t>(L)].Restrict(*planes, columns[static_cast<size_t>(L - of.from)]);
    }
    for (int q = tally.Questions().from; q <= tally.Questions().to; ++q) {
        BlockMask base = met;
        if (apart) {
            ofQuestion[static_cast<size_t>(q - questions.from)].Restrict(*planes, base);
        } else {
            columns.assign(columns.size(), planes->Valid());
            for (int L = of.from; L <= of.to; ++L)
                Joined(q, L).Restrict(*planes, columns[static_cast<size_t>(L - of.from)]);
        }
        CountQuestionBlock(q, base, &tally.At(q, of.from));
    }
}

TableCounter::TableCounter(const Survey& survey, const TotalOption& option, const BitKernels& kernels)
    : impl_(std::make_unique<Impl>(survey, option, kernels)) {}

TableCounter::~TableCounter() = default;

void TableCounter::CountTo(qint32 samples) {
    const qint32 all = impl_->survey.SampleCount();
    while (impl_->done < std::min(samples, all)) {
        const int count = static_cast<int>(std::min<qint32>(all - impl_->done, kBlockSamples));
        impl_->CountBlock(impl_->done, count, impl_->shared);
        impl_->done += count;
    }
}

Figures TableCounter::Count(int q, int L, qint32 samples) {
    if (samples == impl_->done) return impl_->shared.At(q, L);
    Tally tally({q, q}, {L, L});
    for (qint32 first = 0; first < samples; first += kBlockSamples)
        impl_->CountBlock(first, static_cast<int>(std::min<qint32>(samples - first, kBlockSamples)), tally);
    return tally.At(q, L);
}

}  // namespace quibra
