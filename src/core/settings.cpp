#include "core/settings.h"
