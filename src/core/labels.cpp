#include "core/labels.h"
