// Doing recorded changes again, on a survey that is as it was before them. A record may come from a file: what doesn't
// fit the survey is run-time error 9 and leaves it half done.
#pragma once

#include "core/sample_change_record.h"
#include "core/survey.h"
#include "core/user_interface.h"

namespace quibra {

// Does what the record tells of samples. The renumbering of a rewrite is not among it: see ChangeDefinition.
void RedoChange(Survey& survey, UserInterface& ui, const SampleChangeRecord& record);

// Gives the survey the questionnaire, the conditions and the properties of `definition`, whose samples, file name and
// time of saving don't count. Samples keep their answers, which follow `map`: of those that the new questionnaire has
// no place for none is kept.
void ChangeDefinition(Survey& survey, const Survey& definition, const Renumbering& map);

}  // namespace quibra
