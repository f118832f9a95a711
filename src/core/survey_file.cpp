#include "core/survey_file.h"
