#include "core/survey.h"
