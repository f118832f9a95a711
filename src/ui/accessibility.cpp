#include "ui/accessibility.h"
