#include "assessment/Assessment.h"
