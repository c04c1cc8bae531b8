#include "fontfile/SFNT.h"
