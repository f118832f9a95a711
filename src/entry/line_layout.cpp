#include "entry/line_layout.h"

#include <algorithm>

#include "core/labels.h"

using namespace Qt::StringLiterals;

namespace quibra {

namespace {

constexpr int kLastEntry = 255;  // of those that are edited; it repeats the one before, which ends the table

}  // namespace

void LineLayout::Refresh() {
    rows_.clear();
    int line = 0;
    for (int q = 0; q < survey_.QuestionCount; ++q) {
        for (int a = 0; a < survey_.Questions[q].Anum; ++a) {
            if (line < kLineStartEntries && survey_.LineStart[line] == PackPosition(q, a))
                rows_.push_back({Kind::Line, line++, q, a});
            rows_.push_back({Kind::Answer, line - 1, q, a});
        }
    }
    rows_.push_back({Kind::Line, line, survey_.QuestionCount, 0});
    rows_.push_back({Kind::End, line, survey_.QuestionCount, 0});
}

QString LineLayout::Text(int row) const {
    const auto& [kind, line, q, a] = At(row);
    if (kind == Kind::End) return u"終わり"_s;
    if (kind == Kind::Line)
        return u"■第%1行 "_s.arg(line + 1) +
               (survey_.LineFlag[line] ? u"▲DLL実行 - - - - - - - - -"_s : u"- - - - - - - - - - - - - -"_s);
    const int anum = survey_.Questions[q].Anum;
    return QuestionLabel(survey_, q, {.number = true, .name = true}) +
           (anum > 1 ? u"[%1/%2]"_s.arg(a + 1).arg(anum) : QString()) + QuestionBody(survey_, q);
}

int LineLayout::RowOfLine(int line) const {
    const auto found = std::find_if(rows_.begin(), rows_.end(),
                                    [=](const Row& row) { return row.kind == Kind::Line && row.line == line; });
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

int LineLayout::RowOfAnswer(int q, int a) const {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [=](const Row& row) {
        return row.kind == Kind::Answer && row.q == q && row.a == a;
    });
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

bool LineLayout::Insert(int row) {
    if (!CanInsert(row)) return false;
    const auto& [kind, line, q, a] = At(row);
    const qint16 position = PackPosition(q, a);
    if (line + 2 > kLastEntry || (line >= 0 && survey_.LineStart[line] == position)) return false;
    for (int i = kLastEntry; i >= line + 2; --i) {
        survey_.LineStart[i] = survey_.LineStart[i - 1];
        survey_.LineFlag[i] = survey_.LineFlag[i - 1];
    }
    survey_.LineStart[line + 1] = position;
    survey_.LineStart[kLastEntry] = survey_.LineStart[kLastEntry - 1];
    Refresh();
    return true;
}

bool LineLayout::Remove(int row) {
    if (!CanRemove(row)) return false;
    for (int i = At(row).line; i < kLastEntry; ++i) {
        survey_.LineStart[i] = survey_.LineStart[i + 1];
        survey_.LineFlag[i] = survey_.LineFlag[i + 1];
    }
    survey_.LineStart[kLastEntry] = survey_.LineStart[kLastEntry - 1];
    Refresh();
    return true;
}

void LineLayout::SetFlag(int row, bool on) {
    if (CanFlag(row)) survey_.LineFlag[At(row).line] = on;
}

}  // namespace quibra
