// The words in which questions, choices and conditions are shown, everywhere. Pure functions of the survey.
#pragma once

#include <QString>
#include <QStringList>

#include "core/limit_list.h"
#include "core/survey.h"

namespace quibra {

// What a question's label consists of.
struct LabelParts {
    bool number = false;
    bool name = false;
    bool limit = false;
    bool body = false;
    bool answers = false;
};

QString QuestionName(const Survey& survey, int q);
QString QuestionBody(const Survey& survey, int q);
// raw: the text as written, or empty; otherwise in parentheses, or the condition in words where none is written.
QString QuestionLimitText(const Survey& survey, int q, bool raw);
QString QuestionLabel(const Survey& survey, int q, LabelParts parts);
QString ChoiceLabel(const Survey& survey, int q, int c, bool symbol, bool tags);

// A condition in words: predefined conditions of its mask, then its lines. Verbose names questions and symbols. An
// answer of a question that the survey doesn't have reads "質問301(2)".
QString LimitText(const Survey& survey, const LimitList& list, bool verbose);
QString LimitLinesText(const Survey& survey, const LimitList& list, bool verbose);
// Line i as the editor's list shows it.
QString LimitLineText(const Survey& survey, int i, const LimitList& list);

// Length of the chain of questions that each question's condition depends on, kept in line 0 of its QLimit column.
// Run-time error 6 for a question that depends on itself.
void RecalcQLimitDepth(Survey& survey);

// The lists that windows fill.
QStringList ChoiceList(const Survey& survey, int q);
QStringList PlainQuestionList(const Survey& survey);
QStringList FullQuestionList(const Survey& survey);
// The tree of questions, drawn with characters, for questions from `start` on. Recomputes the depths first.
QStringList RefreshQuestionList(Survey& survey, int start);

}  // namespace quibra
