#include "library/FontIndex.h"
