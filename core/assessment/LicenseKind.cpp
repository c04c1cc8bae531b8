#include "assessment/LicenseKind.h"
