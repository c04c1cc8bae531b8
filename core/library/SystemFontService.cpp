#include "library/SystemFontService.h"
