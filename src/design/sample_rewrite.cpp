#include "design/sample_rewrite.h"

#include <array>
#include <cstring>

#include "companion/answer_bits.h"
#include "conditions/block_condition.h"
#include "core/answer_store.h"
#include "core/plane_masks.h"
#include "entry/answer_check.h"

namespace quibra {

namespace {

constexpr int kStoredNumbers = 256;  // that fit into a field
constexpr int kBitsAStep = 57;       // that lie in the 8 bytes from their first one on, wherever in it they begin

// Stored numbers from low to high.
struct NumberRange {
    int low;
    int high;
};
using NumberRanges = std::vector<NumberRange>;

// A question that both definitions have, and what becomes of its answers.
struct Carried {
    int from;
    int to;
    int fields;                                 // answers that have room before and behind the edit
    std::array<qint16, kStoredNumbers> choice;  // by stored number: the choice now; kDeleted where there is none
    NumberRanges absent;                        // numbers of no choice
    NumberRanges exclusive;
};

// Bits that move together.
struct BitRun {
    int from;
    int to;
    int length;
};

template <typename Predicate>
NumberRanges RangesOf(int largest, Predicate isIn) {
    NumberRanges ranges;
    for (int v = 1; v <= largest; ++v) {
        if (!isIn(v)) continue;
        if (!ranges.empty() && ranges.back().high == v - 1)
            ranges.back().high = v;
        else
            ranges.push_back({v, v});
    }
    return ranges;
}

Carried CarriedQuestion(const Survey& source, const StructureMaps& maps, const Survey& target, int q) {
    Carried carried{.from = q, .to = maps.QuestionMap[q], .fields = 0, .choice = {}, .absent = {}, .exclusive = {}};
    carried.fields = std::min(source.QIdx[q].Anum, target.QIdx[carried.to].Anum);
    const int choices = target.Questions[carried.to].ChoiceCount;
    for (int v = 0; v < kStoredNumbers; ++v) {
        const qint16 choice = v < kMaxChoices ? maps.ChoiceMap(v, q) : kDeleted;
        carried.choice[static_cast<size_t>(v)] = choice < choices ? choice : kDeleted;
    }
    const auto choiceOf = [&](int v) { return carried.choice[static_cast<size_t>(v)]; };
    const int largest = (1 << source.QIdx[q].BitWidth) - 1;
    carried.absent = RangesOf(largest, [&](int v) { return choiceOf(v) == kDeleted; });
    carried.exclusive = RangesOf(
        largest, [&](int v) { return choiceOf(v) > 0 && target.Choices(choiceOf(v), carried.to).Has(kExclusive); });
    return carried;
}

// True when the answers look the same in both layouts, wherever they lie.
bool MovesAsBits(const Survey& source, const Survey& target, const Carried& carried) {
    const int width = source.QIdx[carried.from].BitWidth;
    if (target.QIdx[carried.to].BitWidth != width) return false;
    for (int v = 1; v < 1 << width; ++v) {
        const qint16 choice = carried.choice[static_cast<size_t>(v)];
        if (choice != kDeleted && choice != v) return false;
    }
    return true;
}

// Copies a run of bits into a record whose bits there are still 0. Whole words are read and written; what they hold
// beyond the run is kept, and memory of samples ends with room for that.
void CopyBits(const unsigned char* from, unsigned char* to, const BitRun& run) {
    for (int done = 0; done < run.length; done += kBitsAStep) {
        const int length = std::min(kBitsAStep, run.length - done);
        uint64_t bits;
        uint64_t word;
        const int start = run.from + done;
        const int place = run.to + done;
        std::memcpy(&bits, from + start / 8, sizeof bits);
        std::memcpy(&word, to + place / 8, sizeof word);
        word |= (bits >> start % 8 & ((uint64_t{1} << length) - 1)) << place % 8;
        std::memcpy(to + place / 8, &word, sizeof word);
    }
}

void Add(const BlockMask& more, BlockMask& mask) {
    for (size_t w = 0; w < mask.size(); ++w)
        mask[w] |= more[w];
}

bool IsEmpty(const BlockMask& mask) {
    return std::all_of(mask.begin(), mask.end(), [](uint64_t word) { return word == 0; });
}

bool HasTextSlots(const Survey& survey, int q) {
    return survey.QIdx[q + 1].EssayStart > survey.QIdx[q].EssayStart;
}

// Takes the samples out of `answered` that have no answer to the question; `planes` are those of `survey`.
void KeepAnswered(SamplePlanes& planes, const Survey& survey, int q, BlockMask& answered) {
    const AnswerLayoutRec& layout = survey.QIdx[q];
    if (layout.Anum == 0)
        answered = {};
    else
        KeepFilled(planes.Field(layout.BitStart, layout.BitWidth), layout.BitWidth, planes.Words(), answered);
}

class Rewrite {
  public:
    Rewrite(const Survey& source, const StructureMaps& maps, Survey& target);

    // Samples first to first + count - 1. Gives those that may be something else than what the maps make of them.
    BlockMask Block(qint32 first, int count);

  private:
    void FindFaults(const Carried& carried, BlockMask& faulty, BlockMask& touched);
    void MoveAnswers(qint32 dno);
    void MoveTexts(qint32 dno, int s);
    void Correct(qint32 dno, const Carried& carried);
    BlockMask CheckLimits(qint32 first);
    void SetFlags(qint32 first);

    const Survey& source_;
    Survey& target_;
    std::vector<Carried> carried_;
    std::vector<int> dropped_;  // questions that are gone
    std::vector<BitRun> runs_;
    std::vector<size_t> renumbered_;  // places in carried_ of what doesn't move as bits
    std::vector<int> carriedOfSlot_;  // by old text slot: place in carried_, or -1
    std::vector<BlockMask> faulty_;   // by place in carried_: samples whose answers take the steps
    SamplePlanes planes_;

    struct Limited {
        int q;
        BlockCondition condition;
    };
    std::vector<Limited> limited_;                           // questions with a condition
    std::vector<std::pair<int, BlockCondition>> preLimits_;  // slots with lines
    qint16 heldByAll_ = 0;                                   // bits of the slots without
    SamplePlanes targetPlanes_;

    std::array<qint16, kMaxAnswers> answers_{};
    std::array<QString, kMaxAnswers> texts_;
    EssayList movedTexts_;
};

int TestedFields(const Survey& target) {
    int fields = 0;
    for (int q = 0; q < target.QuestionCount; ++q)
        if (target.QLimit(1, q).a != 0)
            fields += 1 + BlockCondition(target, LimitList(target.QLimit.Column(q))).FieldCount();
    for (int k = 0; k < kPreLimitSlots; ++k)
        fields += BlockCondition(target, LimitList(target.PreLimit.Column(k))).FieldCount();
    return fields;
}

Rewrite::Rewrite(const Survey& source, const StructureMaps& maps, Survey& target)
    : source_(source),
      target_(target),
      carriedOfSlot_(static_cast<size_t>(source.EssaySlots), -1),
      planes_(source, source.AnswerSlots),
      targetPlanes_(target, TestedFields(target)) {
    for (int q = 0; q < source.QuestionCount; ++q) {
        if (maps.QuestionMap[q] == kDeleted) {
            dropped_.push_back(q);
            continue;
        }
        const size_t place = carried_.size();
        carried_.push_back(CarriedQuestion(source, maps, target, q));
        const Carried& carried = carried_.back();
        const AnswerLayoutRec& from = source.QIdx[q];
        std::fill(carriedOfSlot_.begin() + from.EssayStart, carriedOfSlot_.begin() + source.QIdx[q + 1].EssayStart,
                  static_cast<int>(place));
        if (!MovesAsBits(source, target, carried)) {
            renumbered_.push_back(place);
            continue;
        }
        const BitRun run{from.BitStart, target.QIdx[carried.to].BitStart, carried.fields * from.BitWidth};
        if (!runs_.empty() && runs_.back().from + runs_.back().length == run.from &&
            runs_.back().to + runs_.back().length == run.to)
            runs_.back().length += run.length;
        else
            runs_.push_back(run);
    }
    faulty_.resize(carried_.size());

    for (int q = 0; q < target.QuestionCount; ++q)
        if (target.QLimit(1, q).a != 0) limited_.push_back({q, {target, LimitList(target.QLimit.Column(q))}});
    for (int k = 0; k < kPreLimitSlots; ++k) {
        LimitList list(target.PreLimit.Column(k));
        list[0] = {};
        if (list[1].a != 0)
            preLimits_.push_back({k, {target, list}});
        else
            heldByAll_ = static_cast<qint16>(heldByAll_ | 1 << k);
    }
}

// Adds to `faulty` the samples in whose answers a check may find something, or whose fields have gaps, and to `touched`
// those that lose answers for want of room as well.
void Rewrite::FindFaults(const Carried& carried, BlockMask& faulty, BlockMask& touched) {
    const AnswerLayoutRec& layout = source_.QIdx[carried.from];
    const int width = layout.BitWidth;
    const int words = planes_.Words();
    const BlockMask valid = planes_.Valid();
    const auto addInRanges = [&](const NumberRanges& ranges, const uint64_t* field, const BlockMask& among) {
        for (const NumberRange& range : ranges)
            AddInRange(field, width, range.low, range.high, among, words, faulty);
    };
    faulty = {};
    BlockMask answered = valid;  // an answer at every position so far
    std::array<const uint64_t*, kMaxAnswers> fields;
    for (int i = 0; i < layout.Anum; ++i) {
        const uint64_t* field = fields[static_cast<size_t>(i)] = planes_.Field(layout.BitStart + i * width, width);
        BlockMask filled = valid;
        KeepFilled(field, width, words, filled);
        if (i == carried.fields) {
            for (size_t w = 0; w < filled.size(); ++w)
                touched[w] |= filled[w] & answered[w];
            break;
        }
        for (size_t w = 0; w < filled.size(); ++w) {
            faulty[w] |= filled[w] & ~answered[w];
            answered[w] &= filled[w];
        }
        if (IsEmpty(answered)) continue;
        addInRanges(carried.absent, field, answered);
        if (i == 0) continue;
        if (i == 1) addInRanges(carried.exclusive, fields[0], answered);
        addInRanges(carried.exclusive, field, answered);
        for (int j = 0; j < i; ++j) {
            BlockMask repeated = answered;
            KeepSame(fields[static_cast<size_t>(j)], field, width, words, repeated);
            Add(repeated, faulty);
        }
    }
    Add(faulty, touched);
}

void Rewrite::MoveAnswers(qint32 dno) {
    const unsigned char* from = source_.Samples.Packed(dno);
    unsigned char* to = target_.Samples.Packed(dno);
    for (const BitRun& run : runs_)
        CopyBits(from, to, run);
    const qint16* bits = source_.Samples.Bits(dno);
    for (const size_t place : renumbered_) {
        const Carried& carried = carried_[place];
        const AnswerLayoutRec& old = source_.QIdx[carried.from];
        const AnswerLayoutRec& now = target_.QIdx[carried.to];
        for (int i = 0; i < carried.fields; ++i) {
            const int number = ReadField(bits, old.BitStart + i * old.BitWidth, old.BitWidth);
            if (number == 0) break;
            WriteField(target_.Samples.Bits(dno), now.BitStart + i * now.BitWidth, now.BitWidth,
                       std::max<int>(carried.choice[static_cast<size_t>(number)], 0));
        }
    }
}

// The texts of answers that move as they are; `s` is the sample's place in the block. A text whose choice bears none
// any more sends its answers to the checks.
void Rewrite::MoveTexts(qint32 dno, int s) {
    const EssayList& texts = source_.Samples.Essays(dno);
    movedTexts_.clear();
    for (const Essay& text : texts) {
        const int place = text.slot < source_.EssaySlots ? carriedOfSlot_[static_cast<size_t>(text.slot)] : -1;
        if (place < 0) continue;
        const Carried& carried = carried_[static_cast<size_t>(place)];
        BlockMask& faulty = faulty_[static_cast<size_t>(place)];
        const uint64_t bit = uint64_t{1} << s % 64;
        if (faulty[static_cast<size_t>(s / 64)] & bit) continue;
        const AnswerLayoutRec& layout = source_.QIdx[carried.from];
        const int i = text.slot - layout.EssayStart;
        if (i >= carried.fields) continue;
        const int number = ReadField(source_.Samples.Bits(dno), layout.BitStart + i * layout.BitWidth, layout.BitWidth);
        if (number == 0 || !source_.Choices(number, carried.from).Has(kEssay)) continue;
        if (target_.Choices(carried.choice[static_cast<size_t>(number)], carried.to).Has(kEssay))
            movedTexts_.push_back({static_cast<qint16>(target_.QIdx[carried.to].EssayStart + i), text.text});
        else
            faulty[static_cast<size_t>(s / 64)] |= bit;
    }
    if (!movedTexts_.empty()) target_.Samples.SetEssays(dno, EssayList(movedTexts_));
}

// The steps themselves, for one question of a sample.
void Rewrite::Correct(qint32 dno, const Carried& carried) {
    const AnswerLayoutRec& old = source_.QIdx[carried.from];
    const AnswerLayoutRec& now = target_.QIdx[carried.to];
    qint16 count = 0;
    maAno_popC(source_.QIdx.Data(), carried.from, source_.Samples.Bits(dno), &count, answers_.data());
    count = std::min(count, now.Anum);
    const bool hasTexts = HasTextSlots(source_, carried.from);
    for (int i = 0; i < count; ++i) {
        const auto at = static_cast<size_t>(i);
        const qint16 number = answers_[at];
        const bool bearsText = hasTexts && number < kMaxChoices && source_.Choices(number, carried.from).Has(kEssay);
        texts_[at] = bearsText ? source_.Samples.Essay(dno, old.EssayStart + i) : QString();
        answers_[at] = carried.choice[static_cast<size_t>(number)];
    }
    QuestionAnswers answers{count, answers_.data(), texts_.data()};
    CorrectQuestion(target_, carried.to, answers, true, nullptr);
    maAno_pushC(target_.QIdx.Data(), carried.to, target_.Samples.Bits(dno), &answers.count, answers_.data());
    if (!HasTextSlots(target_, carried.to)) return;
    for (int i = 0; i < now.Anum; ++i) {
        const auto at = static_cast<size_t>(i);
        const bool bearsText = i < answers.count && target_.Choices(answers_[at], carried.to).Has(kEssay);
        target_.Samples.SetEssay(dno, now.EssayStart + i, bearsText ? texts_[at] : QString());
    }
}

// CheckAllLimits where one of the conditions is not met; it would do nothing elsewhere.
BlockMask Rewrite::CheckLimits(qint32 first) {
    BlockMask unmet{};
    for (const Limited& limited : limited_) {
        BlockMask answered = targetPlanes_.Valid();
        KeepAnswered(targetPlanes_, target_, limited.q, answered);
        BlockMask met = answered;
        limited.condition.Restrict(targetPlanes_, met);
        for (size_t w = 0; w < unmet.size(); ++w)
            unmet[w] |= answered[w] & ~met[w];
    }
    ForEachSample(unmet, [&](int s) {
        for (const Limited& limited : limited_)
            CheckLimit(target_, first + s, limited.q, nullptr);
    });
    return unmet;
}

void Rewrite::SetFlags(qint32 first) {
    qint16* flags = target_.Samples.Flags() + first;
    std::fill(flags, flags + targetPlanes_.Count(), heldByAll_);
    for (const auto& [k, condition] : preLimits_) {
        BlockMask met = targetPlanes_.Valid();
        condition.Restrict(targetPlanes_, met);
        ForEachSample(met, [flags, bit = 1 << k](int s) { flags[s] = static_cast<qint16>(flags[s] | bit); });
    }
}

BlockMask Rewrite::Block(qint32 first, int count) {
    BlockMask touched{};
    planes_.Load(first, count);
    for (size_t place = 0; place < carried_.size(); ++place)
        FindFaults(carried_[place], faulty_[place], touched);
    for (const int q : dropped_) {
        BlockMask answered = planes_.Valid();
        KeepAnswered(planes_, source_, q, answered);
        Add(answered, touched);
    }
    for (int s = 0; s < count; ++s) {
        const qint32 dno = first + s;
        target_.Samples.SetIDno(dno, source_.Samples.IDno(dno));
        MoveAnswers(dno);
        if (!source_.Samples.Essays(dno).empty()) MoveTexts(dno, s);
    }
    for (size_t place = 0; place < carried_.size(); ++place) {
        Add(faulty_[place], touched);
        ForEachSample(faulty_[place], [&](int s) { Correct(first + s, carried_[place]); });
    }
    targetPlanes_.Load(first, count);
    const BlockMask limited = CheckLimits(first);
    Add(limited, touched);
    if (!IsEmpty(limited)) targetPlanes_.Load(first, count);
    SetFlags(first);
    return touched;
}

// The map for the record: what the old definition had, and nothing beyond.
Renumbering RecordedMap(const Survey& source, const StructureMaps& maps) {
    Renumbering map;
    for (int q = 0; q < source.QuestionCount; ++q) {
        map.QuestionMap.push_back(maps.QuestionMap[q]);
        const auto choices = maps.ChoiceMap.Column(q);
        map.ChoiceMap.emplace_back(choices.begin(), choices.begin() + source.Questions[q].ChoiceCount);
    }
    return map;
}

// GetAllAnswersEssay on data that may be damaged: a number that no choice can have bears no text.
class AllAnswers {
  public:
    explicit AllAnswers(const Survey& survey)
        : survey_(survey),
          counts_(static_cast<size_t>(survey.QuestionCount) + 1),
          answers_(static_cast<size_t>(survey.AnswerSlots) + 1),
          texts_(answers_.size()) {}

    AnswerLists Read(qint32 dno) {
        GetAllAnswers(survey_, dno, counts_.data(), answers_.data());
        size_t k = 0;
        for (int q = 0; q < survey_.QuestionCount; ++q) {
            const AnswerLayoutRec& layout = survey_.QIdx[q];
            const bool hasTexts = HasTextSlots(survey_, q);
            for (int i = 0; i < counts_[static_cast<size_t>(q)]; ++i, ++k) {
                const bool bearsText =
                    hasTexts && answers_[k] < kMaxChoices && survey_.Choices(answers_[k], q).Has(kEssay);
                texts_[k] = bearsText ? survey_.Samples.Essay(dno, layout.EssayStart + i) : QString();
            }
        }
        return {counts_.data(), answers_.data(), texts_.data()};
    }

  private:
    const Survey& survey_;
    std::vector<qint16> counts_;
    std::vector<qint16> answers_;
    std::vector<QString> texts_;
};

}  // namespace

bool RewriteSamples(const Survey& source, const StructureMaps& maps, Survey& target, TouchedSamples& touched,
                    const std::function<bool(qint32 done)>& goOn) {
    const qint32 samples = source.SampleCount();
    target.Samples.SetLayout(target.SampleBytes, target.EssaySlots);
    target.Samples.Allocate(samples);
    Rewrite rewrite(source, maps, target);
    touched.clear();
    touched.reserve(static_cast<size_t>(samples / kBlockSamples) + 1);
    for (qint32 first = 0; first < samples; first += kBlockSamples) {
        const int count = std::min(samples - first, kBlockSamples);
        touched.push_back(rewrite.Block(first, count));
        if (!goOn(first + count)) return false;
    }
    return true;
}

void RecordRewrite(const Survey& source, const StructureMaps& maps, const Survey& target, const TouchedSamples& touched,
                   SampleChange& change, const std::function<void()>& turn) {
    if (!change.IsHeard()) return;
    change.BeginRewrite(RecordedMap(source, maps), target.QuestionCount);
    AllAnswers before(source);
    AllAnswers after(target);
    constexpr int kSamplesATurn = 1024;
    for (size_t block = 0; block < touched.size(); ++block)
        ForEachSample(touched[block], [&](int s) {
            const qint32 dno = static_cast<qint32>(block) * kBlockSamples + s;
            change.Rewritten(source.Samples.IDno(dno), before.Read(dno), after.Read(dno));
            if (s % kSamplesATurn == 0) turn();
        });
}

}  // namespace quibra
