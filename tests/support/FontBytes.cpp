#include "support/FontBytes.h"
