#include "tabulation/table_counter.h"

#include "conditions/limit_lists.h"

namespace quibra {

struct TableCounter::Impl {
    const Survey& survey;
    const TotalOption& option;
};

TableCounter::TableCounter(const Survey& survey, const TotalOption& option)
    : impl_(std::make_unique<Impl>(Impl{survey, option})) {}

TableCounter::~TableCounter() = default;

void TableCounter::CountTo(qint32) {}

Figures TableCounter::Count(int q, int L, qint32 samples) {
    const Survey& survey = impl_->survey;
    LimitList list(LimitList::kMaxBound);
    int pos;
    ClearLimit(list, pos);
    AppendLimit(list, pos, survey.QLimit.Column(q));
    AppendLimit(list, pos, impl_->option.Limits.Column(0));
    AppendLimit(list, pos, impl_->option.Limits.Column(L + 1));
    Figures figures;
    for (qint32 dno = 0; dno < samples; ++dno)
        figures.persons += VerstTotalC(list.Data(), survey.QIdx.Data(), survey.Samples.PreLimitBits(dno),
                                       survey.Samples.Bits(dno), q, figures.counts, impl_->option.Rank);
    return figures;
}

}  // namespace quibra
