#include "core/survey_json.h"
