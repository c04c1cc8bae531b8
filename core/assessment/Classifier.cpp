#include "assessment/Classifier.h"
