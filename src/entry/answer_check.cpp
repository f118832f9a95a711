#include "entry/answer_check.h"

#include <algorithm>
#include <array>

#include "companion/limit_terms.h"
#include "conditions/limit_lists.h"
#include "core/labels.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

void CopyAnswer(QuestionAnswers& answers, int to, int from) {
    answers.Cno[to] = answers.Cno[from];
    answers.Essay[to] = answers.Essay[from];
    if (answers.EssayID) answers.EssayID[to] = answers.EssayID[from];
    if (answers.Pos) answers.Pos[to] = answers.Pos[from];
    if (answers.Len) answers.Len[to] = answers.Len[from];
}

void ClearEssay(QuestionAnswers& answers, int i) {
    answers.Essay[i].clear();
    if (answers.EssayID) answers.EssayID[i] = 0;
}

void ClearAnswer(QuestionAnswers& answers, int i) {
    answers.Cno[i] = 0;
    ClearEssay(answers, i);
}

// Those behind it move up. Of an only answer the place stays, with 0 in it.
void RemoveAnswer(QuestionAnswers& answers, int i) {
    for (int k = i; k + 1 < answers.count; ++k)
        CopyAnswer(answers, k, k + 1);
    --answers.count;
    ClearAnswer(answers, answers.count);
}

QString CheckedLabel(const Survey& survey, int q) {
    return QuestionLabel(survey, q, {.number = true, .name = true});
}

// The checks on one question, each a pass over its answers.
class QuestionCheck {
  public:
    QuestionCheck(const Survey& survey, int q, QuestionAnswers& answers, CorrectionNotice* notice)
        : survey_(survey), q_(q), answers_(answers), notice_(notice) {}

    bool Changed() const { return changed_; }

    void ChoicesExist() {
        for (int i = 0; i < answers_.count; ++i) {
            while (i < answers_.count && !Exists(answers_.Cno[i])) {
                Tell(u"の回答は存在しない選択肢", u"を回答してます", i);
                const int other = WithPolicy(kOtherForNoChoice) ? FirstOtherChoice(survey_, q_) : -1;
                if (other != -1) {
                    answers_.Cno[i] = static_cast<qint16>(other);
                } else {
                    const bool only = answers_.count == 1;
                    RemoveAnswer(answers_, i);
                    if (only) answers_.count = 1;
                }
            }
        }
    }

    void EssaysAllowed() {
        for (int i = 0; i < answers_.count; ++i) {
            if (answers_.Essay[i].isEmpty() || Has(answers_.Cno[i], kEssay)) continue;
            Tell(u"の回答", u"は記述選択肢ではないのに記述文があります", i);
            const int other = WithPolicy(kOtherForNoEssay) ? FirstOtherChoice(survey_, q_) : -1;
            if (other != -1 && Has(other, kEssay))
                answers_.Cno[i] = static_cast<qint16>(other);
            else
                ClearEssay(answers_, i);
        }
    }

    void NoRepeats() {
        for (int i = 1; i < answers_.count; ++i) {
            while (i < answers_.count && Repeats(i)) {
                Tell(u"の複数回答に重複", u"がありました。取り除いておきます", i);
                RemoveAnswer(answers_, i);
            }
        }
    }

    // A removed exclusive answer takes the next one's turn with it, so of two side by side the second stays.
    void ExclusiveAlone() {
        for (int i = 0; i < answers_.count && answers_.count > 1; ++i) {
            if (!Has(answers_.Cno[i], kExclusive)) continue;
            if (WithPolicy(kDropExclusive)) {
                Tell(u"の複数回答に排他回答", u"が混じっていました。排他回答を取り除いておきます。", i);
                RemoveAnswer(answers_, i);
            } else {
                Tell(u"の複数回答に排他回答", u"が混じっていました。排他回答以外の回答を取り除いておきます。", i);
                CopyAnswer(answers_, 0, i);
                answers_.count = 1;
            }
        }
    }

  private:
    bool WithPolicy(CorrectFlag flag) const { return survey_.CorrectFlags & flag; }
    bool Exists(int choice) const { return choice >= 0 && choice < survey_.Questions[q_].ChoiceCount; }
    bool Has(int choice, StatusBit bit) const { return survey_.Choices(choice, q_).Has(bit); }

    bool Repeats(int i) const {
        const int choice = answers_.Cno[i];
        for (int j = 0; j < i; ++j) {
            if (answers_.Cno[j] != choice || answers_.Essay[j] != answers_.Essay[i]) continue;
            if (!answers_.Essay[i].isEmpty() || !(Has(choice, kOther) || Has(choice, kMultiple))) return true;
        }
        return false;
    }

    // Every repair speaks first.
    void Tell(QStringView head, QStringView tail, int i) {
        changed_ = true;
        if (!notice_) return;
        notice_->ShowCorrection(CheckedLabel(survey_, q_) + head.toString(), tail.toString(),
                                answers_.Pos ? answers_.Pos[i] : 0, answers_.Len ? answers_.Len[i] : 0);
    }

    const Survey& survey_;
    const int q_;
    QuestionAnswers& answers_;
    CorrectionNotice* notice_;
    bool changed_ = false;
};

}  // namespace

int FirstOtherChoice(const Survey& survey, int q) {
    for (int c = 1; c < survey.Questions[q].ChoiceCount; ++c)
        if (survey.Choices(c, q).Has(kOther)) return c;
    return -1;
}

bool CorrectQuestion(const Survey& survey, int q, QuestionAnswers& answers, bool repeats, CorrectionNotice* notice) {
    QuestionCheck check(survey, q, answers, notice);
    check.ChoicesExist();
    check.EssaysAllowed();
    if (repeats) check.NoRepeats();
    if (answers.count == 0) {
        answers.count = 1;
        ClearAnswer(answers, 0);
    }
    check.ExclusiveAlone();
    return check.Changed();
}

bool CorrectAnswers(const Survey& survey, WorkingSample& working, bool repeats, CorrectionNotice* notice) {
    const auto answersFrom = [&](qint64 slot) {
        return QuestionAnswers{0,
                               working.SlotCno.data() + slot,
                               working.SlotEssay.data() + slot,
                               working.SlotEssayID.data() + slot,
                               working.SlotPos.data() + slot,
                               working.SlotLen.data() + slot};
    };
    QuestionAnswers all = answersFrom(0);
    qint64 taken = 0;
    qint64 wanted = 0;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        const qint16 count = working.AnswerCount[static_cast<size_t>(q)];
        CheckSubscript(count, kMaxAnswers + 1);
        taken += count;
        wanted += std::max<qint16>(count, 1);
    }
    CheckSubscript(wanted, static_cast<qint64>(working.SlotCno.size()) + 1);

    // From the last slot on, so that each question without answers gets one before anything is looked at.
    for (int q = survey.QuestionCount - 1; q >= 0 && wanted > taken; --q) {
        qint16& count = working.AnswerCount[static_cast<size_t>(q)];
        if (count == 0) {
            count = 1;
            --wanted;
            ClearAnswer(all, static_cast<int>(wanted));
            all.Pos[wanted] = all.Len[wanted] = 0;
        } else {
            for (int i = 0; i < count; ++i)
                CopyAnswer(all, static_cast<int>(--wanted), static_cast<int>(--taken));
        }
    }

    bool changed = false;
    int from = 0;
    int to = 0;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        qint16& count = working.AnswerCount[static_cast<size_t>(q)];
        QuestionAnswers answers = answersFrom(from);
        answers.count = count;
        changed |= CorrectQuestion(survey, q, answers, repeats, notice);
        for (int i = 0; i < answers.count; ++i, ++to)
            if (to != from + i) CopyAnswer(all, to, from + i);
        from += count;
        count = answers.count;
    }
    return changed;
}

bool CheckLimit(Survey& survey, qint32 dno, int q, CorrectionNotice* notice, int pos, int len) {
    const LimitLine first = survey.QLimit(1, q);
    std::array<qint16, kMaxAnswers> answers;
    qint16 count;
    GetAnswers(survey, dno, q, count, answers.data());
    if (answers[0] == 0 || QuestionApplies(survey, dno, q)) return false;
    if (notice)
        notice->ShowCorrection(CheckedLabel(survey, q) + u"の回答"_s, u"は質問の限定に合致していません。"_s, pos, len);

    const QString noEssay;
    if (survey.CorrectFlags & kClearUnlimited || LimitKindOf(first) == kLimitNot) {
        constexpr qint16 kNone = 0;
        SetAnswersEssay(survey, dno, q, 1, &kNone, &noEssay);
        return true;
    }
    const int source = PositionQuestion(first.b);
    const auto wanted = static_cast<qint16>(PositionChoice(first.b));
    if (source >= survey.QuestionCount || wanted >= survey.Questions[source].ChoiceCount) return false;
    GetAnswers(survey, dno, source, count, answers.data());
    if (answers[0] != 0) return false;
    SetAnswersEssay(survey, dno, source, 1, &wanted, &noEssay);
    // The source may hang on a third question. An answered one ends the chain, so a circle of conditions does too.
    CheckLimit(survey, dno, source, notice, pos, len);
    return true;
}

bool CheckAllLimits(Survey& survey, qint32 dno, const WorkingSample& working, CorrectionNotice* notice) {
    bool changed = false;
    size_t slot = 0;
    for (int q = 0; q < survey.QuestionCount; ++q) {
        const bool placed = notice && slot < working.SlotPos.size();
        changed |=
            CheckLimit(survey, dno, q, notice, placed ? working.SlotPos[slot] : 0, placed ? working.SlotLen[slot] : 0);
        slot += static_cast<size_t>(working.AnswerCount[static_cast<size_t>(q)]);
    }
    return changed;
}

bool CheckSample(Survey& survey, qint32 dno, WorkingSample& working, bool repeats, CorrectionNotice* notice) {
    // The store leaves alone what has no text.
    std::fill(working.SlotEssay.begin(), working.SlotEssay.end(), QString());
    GetAllAnswersEssay(survey, dno, working.AnswerCount.data(), working.SlotCno.data(), working.SlotEssay.data());
    const bool corrected = CorrectAnswers(survey, working, repeats, notice);
    if (corrected)
        SetAllAnswersEssay(survey, dno, working.AnswerCount.data(), working.SlotCno.data(), working.SlotEssay.data());
    return CheckAllLimits(survey, dno, working, notice) || corrected;
}

}  // namespace quibra
