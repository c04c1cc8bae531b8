#include "text/FamilyKey.h"
