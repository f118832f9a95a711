#include "entry/sheet_parser.h"

#include <algorithm>
#include <limits>

#include "conditions/limit_lists.h"
#include "core/numbers.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr QChar kCr = u'\r';
constexpr QChar kMark = u'¶';
constexpr int kLongestToken = 4;     // from one dot to the other
constexpr int kLongestNumber = 308;  // of a text that is a number

template <typename T>
T& At(std::vector<T>& elements, int index) {
    CheckSubscript(index, static_cast<qint64>(elements.size()));
    return elements[static_cast<size_t>(index)];
}

// Place of `what` behind `pos`, both counted from 1; 0 when there is none.
int FindBehind(const QString& text, int pos, QChar what) {
    return static_cast<int>(text.indexOf(what, pos)) + 1;
}

class SheetParser {
  public:
    SheetParser(Survey& survey, qint32 dno, SheetReading& reading, const SheetCaller& caller)
        : survey_(survey), dno_(dno), reading_(reading), caller_(caller), text_(reading.Text), working_(survey) {}

    QString Parse(bool save) {
        reading_.StopQ = reading_.StopA = 0;
        reading_.CaretQ = -1;
        for (; pos_ <= Length() + 1; ++pos_)
            if (!Step()) return message_;
        if (!Validate()) return message_;
        if (reading_.CaretQ == -1) reading_.CaretQ = reading_.StopQ;
        if (!save) return QString();
        StoreAnswers(survey_, dno_, working_, caller_.notice);
        SkipForward();
        return survey_.LineFlag[line_] ? kExecuteDll.toString() : QString();
    }

  private:
    // What the slot in hand holds. A "-" adds 4.
    enum SlotState { kEmpty = 0, kSymbol = 1, kComplete = 2, kClosing = 4, kLineEnd = 9 };
    enum QuestionState { kNothing = 0, kAnswering = 1, kClosedItself = 2 };

    int Length() const { return static_cast<int>(text_.size()); }
    qint16 Position() const { return PackPosition(q_, a_); }
    bool BehindLast() const { return q_ >= survey_.QuestionCount; }

    bool Fail(const QString& message, int caret) {
        message_ = message;
        reading_.Caret = caret;
        return false;
    }

    bool Step() {
        const bool end = pos_ > Length();
        if (end && state_ == kSymbol) state_ = kComplete;
        const QChar character = end ? QChar(u' ') : text_[pos_ - 1];
        switch (character.unicode()) {
            case u'\r':
                if (state_ == kSymbol) {
                    CloseSlotFirst();
                } else {
                    state_ = kLineEnd;
                    ++pos_;  // to the LF
                }
                break;
            case u'/':
                if (!ReadEssay()) return false;
                break;
            case u'-':
                state_ += kClosing;
                break;
            case u'▼':
            case u' ':
            case u'¶':
                break;
            case u'[':
                if (!PassName()) return false;
                break;
            default:
                if (WrapBareLine(character)) {
                    --pos_;  // read again, as what it has become
                    return true;
                }
                if (!ReadToken(character)) return false;
        }
        Act();
        const qint16 next = survey_.LineStart[line_ + 1];
        if (Position() > next && PositionAnswer(next) == 0)
            return Fail(QString::number(line_ + 1) + u"行目の回答数が違います。"_s, pos_ - 1);
        return true;
    }

    // The character is read again once the slot in hand has been closed.
    void CloseSlotFirst() {
        state_ = kComplete;
        --pos_;
    }

    bool ReadEssay() {
        const bool starred = text_.size() > pos_ && text_[pos_] == u'*';
        const QStringView mark = starred ? QStringView(u"*/") : QStringView(u"/");
        const int start = pos_ + (starred ? 2 : 1);
        const int end = FindOnLine(start, text_, mark);
        if (end == 0) return Fail(u"記述回答文が//でくくれていません。"_s, pos_);
        if (state_ == kEmpty) {
            const int other = FirstOtherChoice(survey_, q_);
            At(working_.SlotCno, slot_) = static_cast<qint16>(other < 0 ? 1 : other);
        }
        At(working_.SlotEssay, slot_) = text_.mid(start - 1, end - start);
        if (At(working_.SlotEssayID, slot_) == 0) At(working_.SlotEssayID, slot_) = -1;
        state_ = kComplete;
        pos_ = end + static_cast<int>(mark.size()) - 1;
        return true;
    }

    bool PassName() {
        const auto end = static_cast<int>(text_.indexOf(u']', pos_ - 1)) + 1;
        const bool another = end > 0 && QStringView(text_).mid(pos_, end - pos_).contains(u'[');
        if (end == 0 || another) return Fail(u"質問名が[]でくくれていません。"_s, pos_);
        pos_ = end;
        return true;
    }

    // A line for one answer takes a number without dots and a text without slashes: the rest of the line is put between
    // them. True when it was.
    bool WrapBareLine(QChar character) {
        if (!IsSingleAnswerLine(survey_, line_) || FindOnLine(pos_, text_, u"/") != 0) return false;
        const int lineEnd = FindBehind(text_, pos_, kCr);
        int end = lineEnd - 1;
        // The mark goes, and the "-" in front of it.
        if (lineEnd > 0 && FindIn(pos_, lineEnd, kMark) == lineEnd - 1) end = lineEnd - 3;
        if (end > 0 && FindIn(pos_, end + 1, u'-') == end) --end;
        if (end < 1) end = Length();

        const bool dotted = character == u'.';
        if (dotted || end - pos_ <= 0) {
            const int dot = dotted ? FindBehind(text_, pos_, u'.') - pos_ : 0;
            if (dot <= kLongestToken) return false;
        }
        const QString bare = text_.mid(pos_ - 1, end - pos_ + 1);
        const int length = static_cast<int>(bare.size());
        if (IsBareChoice(bare))
            Wrap(length, u'.');
        else if (!bare.contains(u'/'))
            Wrap(length, u'/');
        else
            return false;
        return true;
    }

    // Place of `what` behind `pos` and in front of `end`, or 0.
    int FindIn(int pos, int end, QChar what) const {
        const qsizetype place = QStringView(text_).mid(pos, std::max(end - 1 - pos, 0)).indexOf(what);
        return place < 0 ? 0 : pos + static_cast<int>(place) + 1;
    }

    bool IsBareChoice(const QString& bare) const {
        if (bare == u"0-¶" || bare == u"0-" || bare == u"0") return true;
        const int value = bare.toInt();
        return value > 0 && value < survey_.Questions[q_].ChoiceCount && bare == QString::number(value);
    }

    void Wrap(int length, QChar mark) {
        text_.insert(pos_ - 1 + length, mark);
        text_.insert(pos_ - 1, mark);
        if (caller_.box) caller_.box->SetText(text_);
    }

    bool ReadToken(QChar character) {
        const QString tooLarge = u"回答番号が大きすぎます。"_s;
        if (character != u'.') {
            if (state_ == kSymbol)
                CloseSlotFirst();
            else
                TakeSymbol(SymbolToChoice(survey_, q_, character), pos_, 1);
        } else {
            const int end = FindOnLine(pos_ + 1, text_, u".");
            if (end > pos_ + kLongestToken) return Fail(tooLarge, pos_);
            if (end == 0) return Fail(u"回答番号が ..でくくれていません。"_s, pos_);
            if (state_ == kSymbol) {
                CloseSlotFirst();
            } else {
                const QString token = text_.mid(pos_, end - pos_ - 1);
                const qint16 choice = SymbolToChoice(survey_, q_, token);
                if (choice > kMaxChoices - 1) return Fail(tooLarge, pos_);
                TakeSymbol(choice, pos_ + 1, static_cast<int>(token.size()));
                pos_ = end;
            }
        }
        if (slot_ >= 1 && reading_.Caret >= symbolPos_ && reading_.Caret <= symbolPos_ + symbolLen_)
            reading_.CaretQ = q_;
        return true;
    }

    void TakeSymbol(qint16 choice, int pos, int length) {
        state_ = kSymbol;
        At(working_.SlotCno, slot_) = choice;
        symbolPos_ = pos;
        symbolLen_ = length;
        // A symbol so far back on an endless sheet is not marked.
        if (pos > std::numeric_limits<qint16>::max()) return;
        At(working_.SlotPos, slot_) = static_cast<qint16>(pos);
        At(working_.SlotLen, slot_) = static_cast<qint16>(length);
    }

    void NextSlot() {
        ++slot_;
        symbolPos_ = symbolLen_ = 0;
    }

    void StopAt(int q, int a) {
        reading_.StopQ = std::min<int>(q, survey_.QuestionCount);
        reading_.StopA = reading_.StopQ < survey_.QuestionCount ? a : 0;
    }

    void Act() {
        if (state_ == kSymbol)
            CountAnswer();
        else if (state_ == kComplete)
            EndSlot();
        else if (state_ == kLineEnd)
            EndLine();
        else if (state_ >= kClosing)
            CloseQuestion();
    }

    void CountAnswer() {
        At(working_.AnswerCount, q_) = static_cast<qint16>(a_ + 1);
        question_ = kAnswering;
    }

    void EndSlot() {
        CountAnswer();
        ++a_;
        // Behind the last question there is the spare slot and nothing more.
        const bool open = !BehindLast() && !GetChoiceStatus(survey_, q_, At(working_.SlotCno, slot_), kExclusive) &&
                          a_ != survey_.Questions[q_].Anum;
        if (!open) {
            ++q_;
            a_ = 0;
            question_ = kClosedItself;
        }
        StopAt(q_, a_);
        NextSlot();
        state_ = kEmpty;
    }

    void CloseQuestion() {
        const bool symbolOpen = state_ > kClosing;
        state_ = kEmpty;
        if (question_ != kClosedItself && (!BehindLast() || symbolOpen)) {
            if (question_ == kNothing) {
                At(working_.AnswerCount, q_) = static_cast<qint16>(a_ + 1);
                NextSlot();
            } else if (symbolOpen) {
                NextSlot();
            }
            ++q_;
            a_ = 0;
            StopAt(q_, 0);
        }
        question_ = kNothing;
    }

    void EndLine() {
        state_ = kEmpty;
        const qint16 position = Position();
        const qint16 start = survey_.LineStart[line_];
        const qint16 next = survey_.LineStart[line_ + 1];
        if (BehindLast() && start >= PackPosition(survey_.QuestionCount, 0)) return;
        const bool lastAnswer = a_ >= survey_.Questions[q_].Anum - 1;
        const int remaining = lastAnswer ? PackPosition(q_ + 1, 0) - position : 1;
        const int width = next - start;
        if (position == start && width > remaining && width > 1) return;
        if (position < next) CutLine(next);
        ++line_;
    }

    // Every question up to `next` that has no answer gets an empty one.
    void CutLine(qint16 next) {
        int stopQ = 0;
        int stopA = 0;
        UnpackPosition(next, stopQ, stopA);
        StopAt(stopQ, stopA);
        for (; q_ < reading_.StopQ; ++q_) {
            GiveBlank();
            a_ = 0;
        }
        for (; a_ < reading_.StopA; ++a_)
            GiveBlank();
    }

    void GiveBlank() {
        qint16& count = At(working_.AnswerCount, q_);
        if (count != 0) return;
        count = 1;
        NextSlot();
    }

    bool Validate() {
        int slot = 0;
        for (int q = 0; q < survey_.QuestionCount; ++q)
            for (int i = 0; i < working_.AnswerCount[static_cast<size_t>(q)]; ++i)
                if (!ValidateSlot(q, slot++)) return false;
        return true;
    }

    bool ValidateSlot(int q, int slot) {
        QString& essay = At(working_.SlotEssay, slot);
        const QString message = ValidateAnswer(survey_, q, At(working_.SlotCno, slot), essay, caller_);
        if (!message.isEmpty()) return Fail(message, pos_);
        if (essay.isEmpty()) At(working_.SlotEssayID, slot) = 0;
        return true;
    }

    void SkipForward() {
        int q = reading_.StopQ;
        while (q < survey_.QuestionCount && !QuestionApplies(survey_, dno_, q))
            ++q;
        if (q != reading_.StopQ) StopAt(q, 0);
        if (reading_.StopA == 0) return;
        int slot = -1;
        for (int i = 0; i <= reading_.StopQ; ++i)
            slot += working_.AnswerCount[static_cast<size_t>(i)];
        if (GetChoiceStatus(survey_, reading_.StopQ, At(working_.SlotCno, slot), kExclusive))
            StopAt(reading_.StopQ + 1, 0);
    }

    Survey& survey_;
    const qint32 dno_;
    SheetReading& reading_;
    const SheetCaller& caller_;
    QString& text_;
    WorkingSample working_;
    QString message_;
    int pos_ = 1;
    int q_ = 0;
    int a_ = 0;
    int slot_ = 0;
    int line_ = 0;
    int state_ = kEmpty;
    QuestionState question_ = kNothing;
    int symbolPos_ = 0;  // of the slot in hand
    int symbolLen_ = 0;
};

}  // namespace

QString ParseAnswerSheet(Survey& survey, qint32 dno, SheetReading& reading, bool save, const SheetCaller& caller) {
    CheckSubscript(dno, survey.SampleCount());
    return SheetParser(survey, dno, reading, caller).Parse(save);
}

QString ValidateAnswer(const Survey& survey, int q, int choice, QString& essay, const SheetCaller& caller) {
    if (GetChoiceStatus(survey, q, choice, kNumber)) {
        const double low = survey.Choices(choice, q).Low;
        const double high = survey.Choices(choice, q).High;
        const QString range = u"数量回答が範囲"_s + NumberText(low) + u'～' + NumberText(high);
        if (essay.size() >= kLongestNumber) return range + u"を大きく超えています。"_s;
        if (essay.isEmpty()) return QString();
        const double value = LeadingNumber(essay);
        if (!(low <= value && value <= high)) return range + u"に納まっていません。"_s;
    } else if (GetChoiceStatus(survey, q, choice, kCode)) {
        QString code;
        QString name;
        SplitCodeEssay(essay, code, name);
        if (code != u"?" && !code.isEmpty()) name = u"?"_s;
        LookupCode(survey, caller.tables, caller.ui, q, choice, code, name);
        essay = code + u':' + name;
    }
    return QString();
}

void StoreAnswers(Survey& survey, qint32 dno, WorkingSample& working, CorrectionNotice* notice) {
    CorrectAnswers(survey, working, true, notice);
    // The store would find out midway.
    for (int q = 0; q < survey.QuestionCount; ++q)
        CheckSubscript(working.AnswerCount[static_cast<size_t>(q)], survey.Questions[q].Anum + 1);
    SetAllAnswersEssay(survey, dno, working.AnswerCount.data(), working.SlotCno.data(), working.SlotEssay.data());
    CheckAllLimits(survey, dno, working, notice);
}

bool IsSingleAnswerLine(const Survey& survey, int n) {
    int q1 = 0;
    int a1 = 0;
    int q2 = 0;
    int a2 = 0;
    UnpackPosition(survey.LineStart[n], q1, a1);
    UnpackPosition(survey.LineStart[n + 1], q2, a2);
    if (q1 == q2) return a2 - a1 == 1;
    return q2 == q1 + 1 && a2 == 0 && a1 == survey.Questions[q1].Anum - 1;
}

bool IsInsideEssay(QStringView line, qsizetype at) {
    for (qsizetype i = 0; i < at; ++i) {
        if (line[i] == u'[') {
            const qsizetype end = line.indexOf(u']', i);
            if (end < 0) return false;
            i = end;
        } else if (line[i] == u'/') {
            const bool starred = i + 1 < line.size() && line[i + 1] == u'*';
            const QStringView mark = starred ? QStringView(u"*/") : QStringView(u"/");
            const qsizetype end = line.indexOf(mark, i + mark.size());
            if (end < 0 || at < end + mark.size()) return true;
            i = end + mark.size() - 1;
        }
    }
    return false;
}

int FindOnLine(int start, const QString& text, QStringView what) {
    const qsizetype from = std::min<qsizetype>(start - 1, text.size());
    const QStringView rest = QStringView(text).mid(from);
    const qsizetype cr = rest.indexOf(kCr);
    const qsizetype place = (cr < 0 ? rest : rest.first(cr)).indexOf(what);
    return place < 0 ? 0 : static_cast<int>(from + place) + 1;
}

}  // namespace quibra
