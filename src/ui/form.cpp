#include "ui/form.h"
