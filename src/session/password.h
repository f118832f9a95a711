// The password of a survey: up to 32 small letters, compared as they stand.
#pragma once

#include <QString>
#include <functional>
#include <optional>

#include "session/survey_session.h"

namespace quibra {

// The small letter that a typed character stands for; nothing for a character that no password has.
std::optional<QChar> PasswordLetter(QChar typed);
// The letters of a text, in small ones.
QString PasswordLetters(const QString& text);

// Releases the lock when `word` is the survey's password, else tells that it is not.
bool UnlockWith(SurveySession& session, const QString& word);

// Takes `word` as the new password once it has been entered a second time: `again` asks for that and gives nothing when
// the user turns away. The user is told what came of it.
void ChangePassword(SurveySession& session, const QString& word, const std::function<std::optional<QString>()>& again);

// Sets the level of the lock, which marks the survey as changed.
void SetLockLevel(SurveySession& session, int level);

}  // namespace quibra
