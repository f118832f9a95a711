// The condition picker, for windows that let the user make a condition.
#pragma once

#include "conditions/limit_editor.h"

class QWidget;

namespace quibra {

class Desk;

// Lets the user edit lines 0 to 15 of `list` in a modal window over `parent`; `mode` is one of limit_editor.h. False,
// and the list stays as it was, when the user leaves without OK. An open slot editor is closed first.
bool EditLimit(SurveySession& session, Desk& desk, QWidget* parent, LimitList& list, qint16 mode);

}  // namespace quibra
