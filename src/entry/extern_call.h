// The open hook of answer entry: a program that belongs to one survey looks at the sample being typed and gives text
// back for its sheet. Entry sees the interface alone, so that tests can put a program of their own in its place.
#pragma once

#include <QString>

#include "core/survey.h"

namespace quibra {

class ExternCaller {
  public:
    virtual ~ExternCaller() = default;

    // Calls the survey's program for sample `dno`, whose typing stands at answer `a` of question `q` (both from 0).
    // q is QuestionCount when the user asks for the call, and -1 for a test of the program, which gets no answers.
    // Gives the text for the sheet, or one that tells what failed; empty when there is nothing to add. The program may
    // change the survey's ExternDLL, nothing else. Run-time error 9 for a `dno` that is not there, unless q is -1.
    virtual QString CallExternal(Survey& survey, qint32 dno, int q, int a) = 0;

    // The user has named the survey's program himself, so there is no need to ask whether it may run.
    virtual void Trust(const Survey& survey) = 0;
};

}  // namespace quibra
