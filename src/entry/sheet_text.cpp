#include "entry/sheet_text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "conditions/limit_lists.h"
#include "core/answer_store.h"
#include "core/code_page.h"
#include "core/labels.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr QChar kMark = u'¶';

void AppendEscaped(QString& rtf, QStringView text) {
    for (const QChar character : text) {
        const int code = CharacterCode(character);
        if (character != u'\\' && code >= 32 && code < 128) {
            rtf += character;
            continue;
        }
        const auto append = [&](int byte) {
            constexpr QStringView kDigits = u"0123456789ABCDEF";
            rtf.append(u"\\'").append(kDigits[byte >> 4]).append(kDigits[byte & 15]);
        };
        if (code > 255) append(code >> 8);
        append(code & 255);
    }
}

// What is written for a control. A line end stands for the CR LF that follows it in the text.
QStringView ControlWord(SheetControl::Kind kind) {
    static constexpr QStringView kWords[] = {u"\\cf0 ", u"\\cf1 ", u"\\cf2 ", u"\\cf3 ",
                                             u"\\cf4 ", u"\\f1 ",  u"\\f2 ",  u"\\par "};
    return kWords[kind];
}

void AppendFont(QString& rtf, const FontRec& font) {
    rtf += u"{\\fonttbl"_s;
    if (!font.FontName.isEmpty()) {
        const bool ascii = EncodeCodePage(font.FontName).size() == font.FontName.size();
        const QString name = RtfEscape(font.FontName) + u";}"_s;
        rtf += (ascii ? u"{\\f1 "_s : u"{\\f1\\fcharset128 "_s) + name + u"{\\f2\\fcharset128 "_s + name;
    }
    rtf += u"}\\plain \\f1 "_s;
    if (!font.FontName.isEmpty()) rtf += u"\\fs"_s + QString::number(std::floor(font.FontSize * 2)) + u' ';
    if (font.FontBold) rtf += u"\\b "_s;
    if (font.FontItalic) rtf += u"\\i "_s;
}

void AppendColor(QString& rtf, qint64 color) {
    rtf += u"\\red"_s + QString::number(color & 255) + u"\\green"_s + QString::number((color & 65280) / 256) +
           u"\\blue"_s + QString::number(color >> 16) + u';';
}

QString RtfHead(const SheetLook& look) {
    QString rtf = u"{\\rtf1\\ansi"_s;
    AppendFont(rtf, look.font);
    rtf += u"{\\colortbl"_s;
    AppendColor(rtf, look.font.ForeColor);
    for (const qint32 color : look.colors)
        AppendColor(rtf, std::abs(qint64{color}));
    return rtf + u"}\\cf0 "_s;
}

using Escape = void (*)(QString& rtf, QStringView text);

void AppendForClipboard(QString& rtf, QStringView text) {
    for (const QChar character : text) {
        if (character == u'\\' || character == u'{' || character == u'}') rtf += u'\\';
        if (character.unicode() < 128)
            rtf += character;
        else
            rtf += u"\\u"_s + QString::number(static_cast<qint16>(character.unicode())) + u'?';
    }
}

// The sheet's first `controls` controls and the text up to `end`.
QString RtfUpTo(const SheetText& sheet, const SheetLook& look, size_t controls, qint32 end, Escape escape) {
    QString rtf = RtfHead(look);
    qint32 at = 0;
    for (const SheetControl& control : std::span(sheet.Controls).first(controls)) {
        escape(rtf, QStringView(sheet.Text).mid(at, control.at - at));
        rtf += ControlWord(control.kind);
        at = control.at + (control.kind == SheetControl::kLineEnd ? 2 : 0);
    }
    escape(rtf, QStringView(sheet.Text).mid(at, end - at));
    return rtf;
}

class SheetBuilder {
  public:
    SheetBuilder(const Survey& survey, qint32 dno, const SheetLook& look)
        : survey_(survey), dno_(dno), look_(look), working_(survey) {
        GetAllAnswersEssay(survey, dno, working_.AnswerCount.data(), working_.SlotCno.data(),
                           working_.SlotEssay.data());
    }

    SheetText Build(int stopQ, int stopA, int caretQ, const QString& tail) {
        CheckSubscript(stopQ, survey_.QuestionCount + 1);
        for (int q = 0; q <= stopQ; ++q) {
            const bool finished = q < stopQ;
            AddQuestion(q, finished ? survey_.Questions[q].Anum : std::min<int>(survey_.Questions[q].Anum, stopA));
            if (finished) {
                Control(SheetControl::kNameColor);
                Add(u"-");
                Control(SheetControl::kTextColor);
            }
            if (q == caretQ) NoteCaret();
        }
        EndLineBefore(stopQ, stopA);
        if (look_.names && stopQ < survey_.QuestionCount) {
            AddName(stopQ);
            Add(u" ");
        }
        if (stopQ == caretQ) NoteCaret();
        sheet_.CaretOut =
            caretNoted_ ? static_cast<int>(RtfUpTo(sheet_, look_, caretControls_, caretAt_, AppendEscaped).size()) : 0;
        Add(tail);
        return std::move(sheet_);
    }

  private:
    void Add(QStringView text) { sheet_.Text += text; }
    void Control(SheetControl::Kind kind) {
        sheet_.Controls.push_back({static_cast<qint32>(sheet_.Text.size()), kind});
    }

    void NoteCaret() {
        caretNoted_ = true;
        caretControls_ = sheet_.Controls.size();
        caretAt_ = static_cast<qint32>(sheet_.Text.size());
    }

    void AddName(int q) {
        Control(SheetControl::kNameColor);
        Add(u"[");
        Add(QuestionName(survey_, q));
        Add(u"]");
        Control(SheetControl::kTextColor);
    }

    void EndLineBefore(int q, int a) {
        if (PackPosition(q, a) < survey_.LineStart[line_ + 1]) return;
        if (look_.marks) {
            Control(SheetControl::kNameColor);
            Add(QStringView(&kMark, 1));
            Control(SheetControl::kTextColor);
        }
        Control(SheetControl::kLineEnd);
        Add(u"\r\n");
        ++line_;
    }

    void AddQuestion(int q, int places) {
        const auto color =
            QuestionApplies(survey_, dno_, q) ? SheetControl::kTextColor : SheetControl::kNotApplicableColor;
        const int answers = working_.AnswerCount[static_cast<size_t>(q)];
        Control(color);
        for (int a = 0; a < places; ++a) {
            EndLineBefore(q, a);
            if (a >= answers) continue;
            if (look_.names && a == 0) {
                AddName(q);
                Control(color);
            }
            AddAnswer(q);
        }
    }

    void AddAnswer(int q) {
        const int choice = working_.SlotCno[slot_];
        const QString& essay = working_.SlotEssay[slot_++];
        Add(ChoiceToSymbol(survey_, q, choice));
        if (choice >= kMaxChoices || !survey_.Choices(choice, q).Has(kEssay)) return;
        const bool slash = essay.contains(u'/');
        Control(SheetControl::kEssayColor);
        Add(slash ? u"/*" : u"/");
        Control(SheetControl::kEssayFont);
        Add(essay);
        Control(SheetControl::kFont);
        Add(slash ? u"*/" : u"/");
        Control(SheetControl::kTextColor);
    }

    const Survey& survey_;
    const qint32 dno_;
    const SheetLook& look_;
    WorkingSample working_;
    SheetText sheet_;
    size_t slot_ = 0;
    int line_ = 0;
    bool caretNoted_ = false;
    size_t caretControls_ = 0;
    qint32 caretAt_ = 0;
};

}  // namespace

SheetLook SheetLookOf(const Settings& settings) {
    SheetLook look;
    look.names = settings.ColorSet[kSheetFlagsEntry] & kShowNames;
    look.marks = settings.ColorSet[kSheetFlagsEntry] & kShowMarks;
    look.font = settings.FontSet[kFontAddData];
    std::copy_n(settings.ColorSet.begin(), look.colors.size(), look.colors.begin());
    return look;
}

SheetText BuildAnswerSheet(const Survey& survey, qint32 dno, int stopQ, int stopA, const SheetLook& look, int caretQ,
                           const QString& tail) {
    return SheetBuilder(survey, dno, look).Build(stopQ, stopA, caretQ, tail);
}

QString SheetRtf(const SheetText& sheet, const SheetLook& look) {
    const auto end = static_cast<qint32>(sheet.Text.size());
    return RtfUpTo(sheet, look, sheet.Controls.size(), end, AppendEscaped) + u"\\par }"_s;
}

QByteArray ClipboardRtf(const SheetText& sheet, const SheetLook& look) {
    const auto end = static_cast<qint32>(sheet.Text.size());
    return (RtfUpTo(sheet, look, sheet.Controls.size(), end, AppendForClipboard) + u'}').toLatin1();
}

QString RtfEscape(QStringView text) {
    QString rtf;
    AppendEscaped(rtf, text);
    return rtf;
}

std::vector<SheetRun> SheetRuns(const SheetText& sheet) {
    std::vector<SheetRun> runs;
    qint32 at = 0;
    auto color = SheetColor::Text;
    const auto runTo = [&](qint32 end) {
        if (end > at && !runs.empty() && runs.back().color == color)
            runs.back().length += end - at;
        else if (end > at)
            runs.push_back({at, end - at, color});
        at = end;
    };
    for (const SheetControl& control : sheet.Controls) {
        if (control.kind > SheetControl::kNameColor || static_cast<SheetColor>(control.kind) == color) continue;
        runTo(control.at);
        color = static_cast<SheetColor>(control.kind);
    }
    runTo(static_cast<qint32>(sheet.Text.size()));
    return runs;
}

}  // namespace quibra
