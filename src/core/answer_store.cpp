#include "core/answer_store.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>

#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

void CheckQuestion(const Survey& survey, int q) {
    CheckSubscript(q, survey.QuestionCount);
}

bool BearsEssays(const Survey& survey, int q) {
    return survey.QIdx[q + 1].EssayStart > survey.QIdx[q].EssayStart;
}

void CheckCount(const Survey& survey, int q, int count) {
    CheckSubscript(count, survey.QIdx[q].Anum + 1);
}

// The text that is to lie behind answer `choice`: none for a choice that bears no text, as one that only a damaged file
// holds.
QString EssayToStore(const Survey& survey, int q, int choice, const QString& text) {
    return choice < kMaxChoices && survey.Choices(choice, q).Has(kEssay) ? text : QString();
}

qint32 HalfRounded(qint32 value) {
    return RoundToInt32(value / 2.0);
}

}  // namespace

void GetAnswers(const Survey& survey, qint32 dno, int q, qint16& AnoCount, qint16* Ano) {
    CheckQuestion(survey, q);
    maAno_popC(survey.QIdx.Data(), q, survey.Samples.Bits(dno), &AnoCount, Ano);
}

void GetAnswersEssay(const Survey& survey, qint32 dno, int q, qint16& AnoCount, qint16* Ano, QString* EssayIn) {
    GetAnswers(survey, dno, q, AnoCount, Ano);
    if (!BearsEssays(survey, q)) return;
    for (int i = 0; i < AnoCount; ++i)
        EssayIn[i] = survey.Samples.Essay(dno, survey.QIdx[q].EssayStart + i);
}

QString EssayOfAnswer(const Survey& survey, qint32 dno, int q, int i) {
    CheckQuestion(survey, q);
    return BearsEssays(survey, q) ? survey.Samples.Essay(dno, survey.QIdx[q].EssayStart + i) : QString();
}

void SetAnswers(Survey& survey, qint32 dno, int q, qint16 AnoCount, const qint16* Ano) {
    CheckQuestion(survey, q);
    CheckCount(survey, q, AnoCount);
    maAno_pushC(survey.QIdx.Data(), q, survey.Samples.Bits(dno), &AnoCount, Ano);
    RecalcPreLimitBits(survey, dno);
}

void SetAnswersEssay(Survey& survey, qint32 dno, int q, qint16 AnoCount, const qint16* Ano, const QString* EssayIn) {
    SetAnswers(survey, dno, q, AnoCount, Ano);
    if (!BearsEssays(survey, q)) return;
    for (int i = 0; i < AnoCount; ++i)
        survey.Samples.SetEssay(dno, survey.QIdx[q].EssayStart + i, EssayToStore(survey, q, Ano[i], EssayIn[i]));
}

void GetAllAnswers(const Survey& survey, qint32 dno, qint16* AnoCounts, qint16* Ano) {
    maAno_pop_verstC(survey.QuestionCount, survey.QIdx.Data(), survey.Samples.Bits(dno), AnoCounts, Ano);
}

void GetAllAnswersEssay(const Survey& survey, qint32 dno, qint16* AnoCounts, qint16* Ano, QString* EssayIn) {
    GetAllAnswers(survey, dno, AnoCounts, Ano);
    for (int q = 0, k = 0; q < survey.QuestionCount; k += AnoCounts[q], ++q) {
        if (!BearsEssays(survey, q)) continue;
        for (int i = 0; i < AnoCounts[q]; ++i)
            EssayIn[k + i] =
                EssayToStore(survey, q, Ano[k + i], survey.Samples.Essay(dno, survey.QIdx[q].EssayStart + i));
    }
}

void SetAllAnswers(Survey& survey, qint32 dno, const qint16* AnoCounts, const qint16* Ano) {
    for (int q = 0; q < survey.QuestionCount; ++q)
        CheckCount(survey, q, AnoCounts[q]);
    maAno_push_verstC(survey.QuestionCount, survey.QIdx.Data(), survey.Samples.Bits(dno), AnoCounts, Ano);
    RecalcPreLimitBits(survey, dno);
}

void SetAllAnswersEssay(Survey& survey, qint32 dno, const qint16* AnoCounts, const qint16* Ano,
                        const QString* EssayIn) {
    // All are checked before anything is stored: a sample changes whole or not at all.
    for (int q = 0; q < survey.QuestionCount; ++q)
        CheckCount(survey, q, AnoCounts[q]);
    for (int q = 0, k = 0; q < survey.QuestionCount; k += AnoCounts[q], ++q) {
        if (!BearsEssays(survey, q)) continue;
        for (int i = 0; i < AnoCounts[q]; ++i)
            survey.Samples.SetEssay(dno, survey.QIdx[q].EssayStart + i,
                                    EssayToStore(survey, q, Ano[k + i], EssayIn[k + i]));
    }
    SetAllAnswers(survey, dno, AnoCounts, Ano);
}

WorkingSample::WorkingSample(const Survey& survey)
    : AnswerCount(static_cast<size_t>(survey.QuestionCount) + 1),
      SlotCno(static_cast<size_t>(survey.AnswerSlots) + 1),
      SlotEssayID(SlotCno.size()),
      SlotEssay(SlotCno.size()),
      SlotPos(SlotCno.size()),
      SlotLen(SlotCno.size()) {}

// A binary search whose step never exceeds the difference of the IDs: among nearly continuous IDs the first jump lands
// on the spot.
int FindSample(const Survey& survey, qint32 id, qint32& position) {
    const qint32 count = survey.SampleCount();
    const qint32* ids = survey.Samples.IDs();
    position = 0;
    if (count == 0) return 0;
    position = HalfRounded(count);
    qint64 step = std::max(HalfRounded(position), 1);
    qint64 place = position;
    int result = 0;
    while (place >= 0 && place < count) {
        const qint64 value = ids[place];
        step = std::min(step, std::abs(value - id));
        if (value < id) {
            if (place < count - 1 && id < ids[place + 1]) {
                ++place;
                result = -1;
                break;
            }
            place += step;
        } else if (value > id) {
            if (place > 0 && ids[place - 1] < id) {
                result = -1;
                break;
            }
            place -= step;
        } else {
            break;
        }
        step = std::max<qint64>(step / 2, 1);
    }
    position = static_cast<qint32>(std::clamp<qint64>(place, -1, count));
    return result;
}

namespace {

// FindSample with its two kinds of 0 told apart: the position is a sample's place when true, else where to insert.
bool Locate(const Survey& survey, qint32 id, qint32& position) {
    const bool found = FindSample(survey, id, position) == 0 && position >= 0 && position < survey.SampleCount();
    position = std::max(position, 0);
    return found;
}

// The pointer shows that the program is busy for as long as this lives.
class BusyPointer {
  public:
    explicit BusyPointer(UserInterface& ui) : ui_(ui) { ui_.Busy(true); }
    ~BusyPointer() { ui_.Busy(false); }
    BusyPointer(const BusyPointer&) = delete;
    BusyPointer& operator=(const BusyPointer&) = delete;

  private:
    UserInterface& ui_;
};

}  // namespace

qint32 DnoOfID(const Survey& survey, qint32 id) {
    qint32 position;
    return Locate(survey, id, position) ? position : -1;
}

qint32 AddSample(Survey& survey, UserInterface& ui, qint32 id) {
    qint32 position;
    if (Locate(survey, id, position)) return -1;
    const BusyPointer busy(ui);
    survey.Samples.Insert(position, id);
    return position;
}

void DeleteSample(Survey& survey, UserInterface& ui, qint32 dno) {
    const BusyPointer busy(ui);
    survey.Samples.Erase(dno);
}

qint32 SampleChangeID(Survey& survey, UserInterface& ui, qint32 dno, qint32 id) {
    const BusyPointer busy(ui);
    qint32 position;
    if (Locate(survey, id, position)) return -1;
    const qint32 to = position > dno ? position - 1 : position;
    survey.Samples.Move(dno, to);
    survey.Samples.SetIDno(to, id);
    return to;
}

bool IDsAreSorted(const Survey& survey) {
    const qint32* ids = survey.Samples.IDs();
    return std::is_sorted(ids, ids + survey.SampleCount());
}

// The order is that of an exchange of minima with one shortcut: at each place the smallest ID of the rest (the first of
// equal ones) is fetched, but when the ID that stands there is exactly one above the last one fetched it is taken
// without a look at the rest. Without repeated IDs that is plain sorting; with them the shortcut can leave an equal ID
// behind, as in 1, 2, 1, and old files rely on the order they got. A fetched sample passes all others, which keep their
// order, so the rest is always the list as it was without those fetched: two cursors, one over the list and one over it
// sorted, do.
void SortSamples(Survey& survey, UserInterface& ui) {
    constexpr qint64 kPlaces = qint64{1} << 31;
    if (IDsAreSorted(survey)) return;
    const qint32 count = survey.SampleCount();
    const qint32* ids = survey.Samples.IDs();
    // ID and place in one number: sorted without a look elsewhere, and equal IDs keep their order.
    std::vector<qint64> byID(static_cast<size_t>(count));
    for (qint32 dno = 0; dno < count; ++dno)
        byID[static_cast<size_t>(dno)] = qint64{ids[dno]} * kPlaces + dno;
    // In two halves, between which events run.
    const auto middle = byID.begin() + count / 2;
    std::sort(byID.begin(), middle);
    ui.LetEventsRun();
    std::sort(middle, byID.end());
    std::inplace_merge(byID.begin(), middle, byID.end());
    ui.LetEventsRun();

    std::vector<bool> taken(static_cast<size_t>(count));
    std::vector<qint32> order;
    order.reserve(static_cast<size_t>(count));
    const auto take = [&](qint32 dno) {
        taken[static_cast<size_t>(dno)] = true;
        order.push_back(dno);
    };
    qint32 front = 0;
    auto smallest = byID.cbegin();
    bool known = false;
    qint64 minimum = 0;
    for (qint32 i = 0; i < count - 1; ++i) {
        if ((i + 1) % ReportInterval(count, 100) == 0 || i == count - 2) {
            const QString text = u"ID並び替え "_s + QString::number(i + 1) + u'/' + QString::number(count);
            if (!ui.Progress(text, static_cast<double>(i + 1) / count)) break;
        }
        while (taken[static_cast<size_t>(front)])
            ++front;
        if (known && ids[front] == minimum + 1) {
            take(front);
        } else {
            while (taken[static_cast<size_t>(*smallest & (kPlaces - 1))])
                ++smallest;
            take(static_cast<qint32>(*smallest & (kPlaces - 1)));
            known = true;
        }
        minimum = ids[order.back()];
    }
    for (; front < count; ++front)
        if (!taken[static_cast<size_t>(front)]) order.push_back(front);
    survey.Samples.Reorder(order, [&ui] { ui.LetEventsRun(); });
}

QString SampleIDText(const Survey& survey, qint32 dno) {
    return QString::number(survey.Samples.IDno(dno));
}

bool SampleHasPreLimit(const Survey& survey, qint32 dno, int k) {
    CheckSubscript(k, 17);
    return (survey.Samples.PreLimitBits(dno) >> k) & 1;
}

void SetPreLimitBit(Survey& survey, qint32 dno, int k, bool on) {
    CheckSubscript(k, 16);
    const int bits = survey.Samples.PreLimitBits(dno);
    survey.Samples.SetPreLimitBits(dno, static_cast<qint16>(on ? bits | 1 << k : bits & ~(1 << k)));
}

void RecalcPreLimitBits(Survey& survey, qint32 dno) {
    const qint16 flags = survey.Samples.PreLimitBits(dno);
    const qint16* bits = survey.Samples.Bits(dno);
    int held = 0;
    for (int k = 0; k < kPreLimitSlots; ++k) {
        LimitList list(survey.PreLimit.Column(k));
        list[0] = {};
        if (lmDoC(list.Data(), survey.QIdx.Data(), flags, bits)) held |= 1 << k;
    }
    survey.Samples.SetPreLimitBits(dno, static_cast<qint16>(held));
}

}  // namespace quibra
