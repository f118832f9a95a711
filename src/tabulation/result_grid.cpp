#include "tabulation/result_grid.h"
