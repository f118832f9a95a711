#include "tabulation/table_figures.h"
