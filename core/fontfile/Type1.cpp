#include "fontfile/Type1.h"
