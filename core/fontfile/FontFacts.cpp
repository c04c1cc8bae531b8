#include "fontfile/FontFacts.h"
