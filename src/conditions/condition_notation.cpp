#include "conditions/condition_notation.h"
