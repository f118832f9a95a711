// Whether a survey's own program may run: a survey file may come from anybody, and names a program that would run with
// all the rights of the person who opens it. The user's answers are kept by the survey's path and the program's name in
// a file beside the settings, which several running programs may share.
#pragma once

#include <QSet>
#include <QString>

#include "core/survey.h"
#include "core/user_interface.h"

namespace quibra {

// Where the answers lie.
QString ExternConsentPath();

class ExternConsent {
  public:
    explicit ExternConsent(QString path) : path_(std::move(path)) {}

    // Asks when there is no answer yet, or with `again` when it was No. Cancel, which is also the answer of nobody,
    // counts as No for as long as this object lives, and is not kept.
    bool MayRun(const Survey& survey, UserInterface& ui, bool again);
    // Keeps an answer. A file that can't be written costs no more than the next question.
    void Keep(const Survey& survey, bool allowed);

  private:
    QString path_;
    QSet<QString> unanswered_;
};

}  // namespace quibra
