#include "text/Characters.h"
