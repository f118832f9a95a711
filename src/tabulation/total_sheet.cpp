#include "tabulation/total_sheet.h"
