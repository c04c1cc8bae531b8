#include "library/LicenseFile.h"
