#include "library/FontLibrary.h"
