#include "tabulation/total_option.h"
