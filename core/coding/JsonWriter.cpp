#include "coding/JsonWriter.h"
