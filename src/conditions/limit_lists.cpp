#include "conditions/limit_lists.h"
