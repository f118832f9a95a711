// The last thing done before a program that has failed ends: nobody's work is lost.
#pragma once

#include <QString>

#include "session/survey_session.h"

namespace quibra {

// Writes a survey with unsaved changes beside its file, or into the home folder when that can't be, under a name of its
// own ("name.rescue-20260401-123000.qb"). Gives the path; empty when nothing has changed or nothing could be written.
// Throws nothing.
QString WriteRescueFile(const SurveySession& session) noexcept;

// The same where the program ends without its user: puts the rescued survey in front of the recent files, from where
// the next start offers it, and writes the settings.
QString LeaveUnasked(SurveySession& session) noexcept;

}  // namespace quibra
