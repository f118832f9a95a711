#include "tabulation/essay_list.h"
